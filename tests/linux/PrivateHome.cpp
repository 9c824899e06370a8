#include "linux/PrivateHome.h"

#include <cstdlib>
#include <string>

namespace kestrin::test {

namespace {

class Home {
  public:
    Home() {
        std::string name = (std::filesystem::temp_directory_path() / "kestrin-home-XXXXXX").string();
        m_folder = mkdtemp(name.data());
        for (const auto& [variable, folder] : {std::pair("XDG_DATA_HOME", "data"),
                                               {"XDG_CONFIG_HOME", "config"},
                                               {"XDG_CACHE_HOME", "cache"}}) {
            std::filesystem::create_directories(m_folder / folder);
            setenv(variable, (m_folder / folder).c_str(), 1);
        }
    }
    ~Home() {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    std::filesystem::path m_folder;
};

const Home home;

} // namespace

const std::filesystem::path& privateHome() { return home.m_folder; }

} // namespace kestrin::test
