#include "services/util/BundledImages.h"

#include "services/util/DecodeImage.h"
#include "services/util/Singleton.h"

namespace kestrin {

namespace {

constexpr std::size_t kMostBytesKept = 64U << 20U;

platform::Image load(const std::string& name) {
    const platform::Storage& storage = platform::platform().storage();
    for (const char* type : {"", "png", "jpg", "jpeg"})
        if (const auto bytes = storage.bundleResource(name, type))
            return decodeImage(*bytes);
    return {};
}

} // namespace

std::shared_ptr<BundledImages> BundledImages::getInstance() { return singleton<BundledImages>(); }

platform::Image BundledImages::find(const std::string& name) {
    {
        const std::lock_guard lock(m_mutex);
        if (const auto kept = m_images.find(name); kept != m_images.end())
            return kept->second;
    }
    const platform::Image image = load(name);
    if (image.isValid())
        keep(name, image);
    return image;
}

void BundledImages::keep(const std::string& name, const platform::Image& image) {
    const std::size_t size = image.pixels().size();
    if (size > kMostBytesKept)
        return;
    const std::lock_guard lock(m_mutex);
    if (m_bytes + size > kMostBytesKept) {
        m_images.clear();
        m_bytes = 0;
    }
    if (m_images.try_emplace(name, image).second)
        m_bytes += size;
}

} // namespace kestrin
