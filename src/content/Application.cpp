#include "content/Application.h"

#include "content/GPointer.h"
#include "content/TemplateFiles.h"

#include <algorithm>
#include <stdexcept>

namespace kestrin::content {
namespace {

// A name-based UUID (version 5): the SHA-1 of the path with the version and variant bits put in.
std::string idOf(const std::filesystem::path& page) {
    const GHandle<GChecksum, g_checksum_free> checksum(g_checksum_new(G_CHECKSUM_SHA1));
    const std::string text = "kestrin application " + page.string();
    g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(text.data()),
                      static_cast<gssize>(text.size()));
    std::string hex(g_checksum_get_string(checksum.get()), 32);
    hex[12] = '5';
    hex[16] = "89ab"[g_ascii_xdigit_value(hex[16]) & 3];
    for (const std::size_t dash : {8, 13, 18, 23})
        hex.insert(dash, "-");
    return hex;
}

void requireUtf8(const char* field, const std::string& text) {
    if (!g_utf8_validate_len(text.data(), text.size(), nullptr))
        throw std::runtime_error(std::string("the application's ") + field + " is not UTF-8");
}

bool isHostName(const std::string& name) {
    return !name.empty() && name.size() <= 253 && std::all_of(name.begin(), name.end(), [](char c) {
        return g_ascii_isalnum(c) || c == '.' || c == '-';
    });
}

} // namespace

Application checked(Application application) {
    requireUtf8("title", application.title);
    requireUtf8("theme", application.theme);
    for (const std::string& flag : application.featureFlags)
        requireUtf8("feature flag", flag);
    if (!isHostName(application.hostName))
        throw std::runtime_error("the host name \"" + application.hostName + "\" is not a host name");

    std::error_code missing;
    const std::filesystem::path page = std::filesystem::canonical(application.page, missing);
    if (missing)
        throw std::runtime_error("the page " + application.page.string() + ": " + missing.message());
    if (application.id.empty())
        application.id = idOf(page);
    else if (!g_uuid_string_is_valid(application.id.c_str()))
        throw std::runtime_error("the application id \"" + application.id + "\" is not a UUID");
    TemplateFiles{page}; // throws when there is nothing to open
    application.page = page;
    return application;
}

} // namespace kestrin::content
