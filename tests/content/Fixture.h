#pragma once

#include "Client.h"
#include "content/ContentServer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace kestrin::content {

using test::TemporaryFolder;

constexpr const char* kId = "0f8fad5b-d9cb-469f-a165-70867728950e";
constexpr const char* kPage = "<!doctype html><title>Page</title>";

/// A server over the folder "site"; beside it lies "secret.txt", which it must never serve.
class ServerTest : public testing::Test {
  protected:
    ServerTest() {
        folder.write("site/index.html", kPage);
        folder.write("secret.txt", "the secret");
        application.id = kId;
        application.page = folder.path() / "site";
        application.theme = "card3/www";
    }

    /// Starts `server` over what `application` and `options` then are.
    void start() {
        server.emplace(application, options);
        const auto error = server->start();
        ASSERT_FALSE(error) << *error;
    }

    Answer get(const std::string& path) { return client.get(urlOf(server->port(), path)); }

    TemporaryFolder folder;
    Application application;
    ServerOptions options;
    std::optional<ContentServer> server;
    Client client;
};

} // namespace kestrin::content
