// What a server or a page can hand out as a key string: any bytes.
#include "core/config/KestrinSettings.h"
#include "services/util/Base64.h"
#include "support/FakePlatform.h"

#include <string_view>

namespace {

using namespace kestrin;

void open(std::string_view keyString) {
    try {
        const auto settings = KestrinSettings::initWithKeyString(keyString);
        if (!settings.getTemplateUrl().starts_with("https://") ||
            !settings.getHostUrl().starts_with("https://"))
            __builtin_trap();
        settings.getApplicationID();
    } catch (const InvalidSettings&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool installed = [] {
        platform::installPlatform(std::make_shared<test::FakePlatform>());
        return true;
    }();
    static_cast<void>(installed);
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    open(text);
    open(base64Encode(text)); // so that the bytes reach the JSON parser as well
    return 0;
}
