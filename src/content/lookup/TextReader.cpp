#include "content/lookup/TextReader.h"

#include <opencv2/imgproc.hpp>
#include <tesseract/baseapi.h>
#include <tesseract/ocrclass.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

// OpenMP's. Its header is not there for every compiler.
extern "C" void omp_set_max_active_levels(int levels);

namespace kestrin::content {
namespace {

constexpr int kMostMilliseconds = 3000;
constexpr int kSmall = 800;      // pixels
constexpr int kResolution = 150; // dots an inch, which a camera's picture does not tell

bool isStopped(void* stop, int) { return static_cast<const std::stop_token*>(stop)->stop_requested(); }

} // namespace

TextReader::TextReader() = default;
TextReader::~TextReader() = default;

void TextReader::prepare() {
    if (m_tesseract)
        return;
    auto tesseract = std::make_unique<tesseract::TessBaseAPI>();
    if (tesseract->Init(nullptr, "eng", tesseract::OEM_LSTM_ONLY) != 0)
        throw std::runtime_error("texts cannot be read here: Tesseract lacks its English data");
    tesseract->SetVariable("debug_file", "/dev/null");
    tesseract->SetPageSegMode(tesseract::PSM_SPARSE_TEXT); // signs have no columns or paragraphs
    m_tesseract = std::move(tesseract);
}

std::string TextReader::read(const cv::Mat& gray, const std::stop_token& stop) {
    prepare();
    // Tesseract's threads wait for one another by spinning: where cores are busy it is four times as fast
    // with one.
    omp_set_max_active_levels(0);
    std::stop_token stopped = stop;
    tesseract::ETEXT_DESC progress;
    progress.set_deadline_msecs(kMostMilliseconds);
    progress.cancel = isStopped;
    progress.cancel_this = &stopped;
    // Large letters are read at their own size only, small ones at twice theirs.
    std::string text = readOnce(gray, progress);
    if (std::max(gray.cols, gray.rows) < kSmall) {
        cv::Mat larger;
        cv::resize(gray, larger, {}, 2, 2, cv::INTER_CUBIC);
        text += '\n' + readOnce(larger, progress);
    }
    return text;
}

std::string TextReader::readOnce(const cv::Mat& picture, tesseract::ETEXT_DESC& progress) {
    m_tesseract->SetImage(picture.data, picture.cols, picture.rows, 1, int(picture.step));
    m_tesseract->SetSourceResolution(kResolution);
    m_tesseract->Recognize(&progress); // what was read until it ran out of time counts too
    const std::unique_ptr<char[]> text(m_tesseract->GetUTF8Text());
    m_tesseract->Clear();
    return text ? text.get() : "";
}

} // namespace kestrin::content
