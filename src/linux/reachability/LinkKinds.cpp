#include "linux/reachability/LinkKinds.h"

#include <fstream>

namespace kestrin::gtk {

bool LinkKinds::isWireless(const std::string& link) const {
    std::error_code failure;
    // The newer of the kernel's two interfaces, and the older.
    return std::filesystem::exists(folderOf(link) / "phy80211", failure) ||
           std::filesystem::exists(folderOf(link) / "wireless", failure);
}

bool LinkKinds::isCellular(const std::string& link) const {
    std::ifstream file(folderOf(link) / "uevent");
    for (std::string line; std::getline(file, line);)
        if (line == "DEVTYPE=wwan")
            return true;
    return false;
}

} // namespace kestrin::gtk
