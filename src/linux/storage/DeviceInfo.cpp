#include "linux/storage/DeviceInfo.h"

#include "linux/storage/BundleStorage.h"
#include "linux/toolkit/GRef.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <sys/utsname.h>

namespace kestrin::gtk {

namespace {

using Keyed = GOwned<GHmac, g_hmac_unref>;
using Uuid = std::array<std::uint8_t, 16>;

/// Up to the first line end or NUL (the device tree ends its texts with one).
std::string firstLine(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line.substr(0, line.find('\0'));
}

std::string systemVersion() {
    if (const GText version{g_get_os_info(G_OS_INFO_KEY_VERSION_ID)})
        return version.get();
    utsname kernel{};
    return uname(&kernel) == 0 ? kernel.release : "";
}

std::string model() {
    const std::string name = firstLine("/sys/class/dmi/id/product_name");
    return name.empty() ? firstLine("/proc/device-tree/model") : name;
}

/// For a machine without an id: one made by chance, kept in the application's folder.
std::string ownMachineId(const std::string& applicationId) {
    const std::filesystem::path file = applicationDirectory(applicationId) / "machine-id";
    if (const std::string kept = firstLine(file); !kept.empty())
        return kept;
    const GText made(g_uuid_string_random());
    std::error_code ignored;
    std::filesystem::create_directories(file.parent_path(), ignored);
    g_file_set_contents(file.c_str(), made.get(), -1, nullptr);
    return made.get();
}

std::string machineId(const std::string& applicationId) {
    for (const char* file : {"/etc/machine-id", "/var/lib/dbus/machine-id"})
        if (const std::string id = firstLine(file); id.size() >= 32)
            return id;
    return ownMachineId(applicationId);
}

std::string vendor(const std::string& applicationId) {
    const auto end = applicationId.rfind('.');
    return end == std::string::npos ? applicationId : applicationId.substr(0, end);
}

std::string toText(const Uuid& uuid) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < uuid.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        text += kDigits[uuid[i] >> 4];
        text += kDigits[uuid[i] & 15];
    }
    return text;
}

} // namespace

std::string vendorIdentifier(std::string_view machineId, const std::string& applicationId) {
    const Keyed keyed(
        g_hmac_new(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(machineId.data()), machineId.size()));
    const std::string subject = vendor(applicationId);
    g_hmac_update(keyed.get(), reinterpret_cast<const guchar*>(subject.data()), gssize(subject.size()));
    std::array<std::uint8_t, 32> digest{};
    gsize size = digest.size();
    g_hmac_get_digest(keyed.get(), digest.data(), &size);

    Uuid uuid{};
    std::copy_n(digest.begin(), uuid.size(), uuid.begin());
    uuid[6] = std::uint8_t((uuid[6] & 0x0F) | 0x40); // version and variant of a UUID without other meaning
    uuid[8] = std::uint8_t((uuid[8] & 0x3F) | 0x80);
    return toText(uuid);
}

platform::Device readDevice(const std::string& applicationId) {
    const std::string name = model();
    return {g_get_host_name(),
            "Linux",
            systemVersion(),
            name,
            name,
            vendorIdentifier(machineId(applicationId), applicationId)};
}

} // namespace kestrin::gtk
