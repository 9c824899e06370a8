#include "services/FetchImage.h"

#include "platform/Platform.h"
#include "services/KestrinImage.h"
#include "services/util/Url.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kestrin {

namespace {

bool holdsItsPicture(const std::string& url) {
    constexpr std::string_view kData = "data";
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
    return std::ranges::equal(urlScheme(url).value_or(""), kData, {}, lower);
}

} // namespace

void fetchImage(const std::optional<std::string>& url,
                std::function<void(const std::shared_ptr<KestrinImage>& image)> use) {
    if (!url || holdsItsPicture(*url)) {
        use(KestrinImage::initWithBase64String(url));
        return;
    }
    platform::Dispatch& dispatch = platform::platform().dispatch();
    dispatch.globalAsync([url, use = std::move(use), &dispatch] {
        dispatch.mainAsync([image = KestrinImage::initWithBase64String(url), use] { use(image); });
    });
}

} // namespace kestrin
