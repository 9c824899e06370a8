#pragma once

#include <memory>
#include <opencv2/core/mat.hpp>
#include <stop_token>
#include <string>

namespace tesseract {
class ETEXT_DESC;
class TessBaseAPI;
} // namespace tesseract

namespace kestrin::content {

/// Reads what is printed in a picture, with Tesseract and its English data. One thread at a time.
class TextReader {
  public:
    /// Longer sides make the reading slow and no better.
    static constexpr int kLongest = 1600;

    TextReader();
    ~TextReader();

    /// Loads the data; throws std::runtime_error when that cannot be done.
    void prepare();
    /// The lines that a gray picture shows, UTF-8: as many as are read in three seconds, or until it is
    /// stopped. Prepares if need be.
    std::string read(const cv::Mat& gray, const std::stop_token& stop);

  private:
    std::string readOnce(const cv::Mat& picture, tesseract::ETEXT_DESC& progress);

    std::unique_ptr<tesseract::TessBaseAPI> m_tesseract;
};

} // namespace kestrin::content
