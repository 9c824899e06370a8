#pragma once

#include "content/ContentServer.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string>

namespace kestrin::content {

/// A folder of its own, gone with the test.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kestrin-content-XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(m_path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    void write(const std::string& name, const std::string& text) const {
        const std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }

  private:
    std::filesystem::path m_path;
};

constexpr const char* kId = "0f8fad5b-d9cb-469f-a165-70867728950e";
constexpr const char* kPage = "<!doctype html><title>Page</title>";

/// A server over the folder "site"; beside it lies "secret.txt", which it must never serve.
class ServerTest : public testing::Test {
  protected:
    ServerTest() {
        folder.write("site/index.html", kPage);
        folder.write("secret.txt", "the secret");
        application.id = kId;
        application.title = "Gr\u00fc\u00dfe \"quoted\"";
        application.featureFlags = {"photoshare", "snap", "photoshare"};
        application.page = folder.path() / "site";
        application.theme = "card3/www";
    }

    /// Starts `server` over what `application` and `options` then are.
    void start() {
        server.emplace(application, options);
        const auto error = server->start();
        ASSERT_FALSE(error) << *error;
    }

    TemporaryFolder folder;
    Application application;
    ServerOptions options;
    std::optional<ContentServer> server;
};

} // namespace kestrin::content
