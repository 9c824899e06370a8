#pragma once

#include "platform/Image.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace kestrin {

/// The pictures of the application's bundle by name, each decoded once and kept, up to a bound. Thread: any.
class BundledImages {
  public:
    static std::shared_ptr<BundledImages> getInstance();

    /// `name` with or without its extension; absent when there is no such picture.
    platform::Image find(const std::string& name);

  private:
    void keep(const std::string& name, const platform::Image& image);

    std::mutex m_mutex;
    std::map<std::string, platform::Image> m_images;
    std::size_t m_bytes = 0; ///< of the pixels kept
};

} // namespace kestrin
