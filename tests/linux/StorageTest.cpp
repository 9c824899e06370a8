#include "linux/PrivateHome.h"
#include "linux/storage/BundleStorage.h"
#include "linux/storage/CameraPermissions.h"
#include "linux/storage/DeviceInfo.h"
#include "linux/toolkit/MainLoopDispatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <glib.h>

#include <fstream>

namespace kestrin::gtk {
namespace {

struct CountingLog : platform::LogSink {
    void write(std::string_view) override { ++lines; }
    int lines = 0;
};

class StorageTest : public ::testing::Test {
  protected:
    StorageTest() { std::filesystem::create_directories(bundle / "Sub"); }
    ~StorageTest() override { std::filesystem::remove_all(bundle); }

    void put(const std::string& name, const std::string& text) { std::ofstream(bundle / name) << text; }
    BundleStorage open() { return {bundle.string(), "org.kestrin.Test", log}; }

    const std::filesystem::path bundle = test::privateHome() / "bundle";
    CountingLog log;
};

TEST_F(StorageTest, ResourcesAreFoundByNameAndType) {
    const std::string bytes("a\0\xFF\n", 4);
    put("Sub/flags.json", bytes);
    put("plain", "text");
    put("empty.txt", "");
    const BundleStorage storage = open();
    EXPECT_EQ(storage.bundleResource("Sub/flags", "json"), bytes);
    EXPECT_EQ(storage.bundleResource("plain", ""), "text");
    EXPECT_EQ(storage.bundleResource("empty", "txt"), "");
    for (const char* name : {"none", "Sub", "", "Sub/flags.json"})
        EXPECT_EQ(storage.bundleResource(name, "json"), std::nullopt) << name;
}

TEST_F(StorageTest, ResourcesOutsideTheBundleAreNotFound) {
    std::ofstream(test::privateHome() / "secret.json") << "secret";
    const BundleStorage storage = open();
    for (const std::string& name : {std::string("../secret"), std::string("Sub/../../secret"),
                                    (test::privateHome() / "secret").string()})
        EXPECT_EQ(storage.bundleResource(name, "json"), std::nullopt) << name;
}

TEST_F(StorageTest, ABundleMayBeAResourceOrMissing) {
    const BundleStorage gresource("resource:///org/gtk/libgtk", "org.kestrin.Test", log);
    EXPECT_EQ(gresource.bundleResource("no-such-thing", "ui"), std::nullopt);
    for (const char* nothing : {"", "/no/such/folder"}) {
        const BundleStorage storage(nothing, "org.kestrin.Test", log);
        EXPECT_EQ(storage.bundleResource("flags", "json"), std::nullopt);
        EXPECT_EQ(storage.information("CFBundleVersion"), std::nullopt);
    }
    EXPECT_EQ(log.lines, 0);
}

TEST_F(StorageTest, InformationIsTheTextsOfItsFile) {
    put("info.json", R"({"CFBundleShortVersionString": "1.2", "number": 3, "none": null})");
    const BundleStorage storage = open();
    EXPECT_EQ(storage.information("CFBundleShortVersionString"), "1.2");
    for (const char* key : {"number", "none", "other", ""})
        EXPECT_EQ(storage.information(key), std::nullopt) << key;
    EXPECT_EQ(log.lines, 0);
}

TEST_F(StorageTest, BrokenInformationIsLoggedAndEmpty) {
    int broken = 0;
    for (const char* text : {"", "[]", "{\"a\":", "\xFF", "{\"a\": \"b\"} x"}) {
        put("info.json", text);
        EXPECT_EQ(open().information("a"), std::nullopt) << text;
        EXPECT_EQ(log.lines, ++broken) << text;
    }
}

TEST_F(StorageTest, TheDocumentsFolderExistsBelowTheDataFolder) {
    const auto data = test::privateHome() / "data";
    EXPECT_EQ(open().documentsDirectory(), data / "org.kestrin.Test/documents");
    EXPECT_TRUE(std::filesystem::is_directory(open().documentsDirectory()));
    for (const char* id : {"../../etc", "..", "", "a/b", "."}) {
        const auto folder = BundleStorage("", id, log).documentsDirectory();
        EXPECT_EQ(folder.lexically_normal().parent_path().parent_path(), data) << id;
    }
}

TEST(DeviceTest, TheIdentifierIsAUuidOfMachineAndVendor) {
    const auto id = [](const char* machine, const char* application) {
        return vendorIdentifier(machine, application);
    };
    const std::string own = id("0123456789abcdef0123456789abcdef", "org.example.Viewer");
    EXPECT_THAT(own,
                testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    EXPECT_EQ(own, id("0123456789abcdef0123456789abcdef", "org.example.Viewer"));
    EXPECT_EQ(own, id("0123456789abcdef0123456789abcdef", "org.example.Other"));
    EXPECT_NE(own, id("0123456789abcdef0123456789abcdef", "org.sample.Viewer"));
    EXPECT_NE(own, id("0123456789abcdef0123456789abcdee", "org.example.Viewer"));
    EXPECT_NE(id("", ""), id("", "x"));
}

TEST(DeviceTest, TheDeviceSaysWhatItIs) {
    const platform::Device device = readDevice("org.kestrin.Test");
    EXPECT_EQ(device.systemName, "Linux");
    EXPECT_FALSE(device.name.empty());
    EXPECT_FALSE(device.systemVersion.empty());
    EXPECT_EQ(device.model, device.localizedModel);
    EXPECT_EQ(device.identifierForVendor, readDevice("org.kestrin.Other").identifierForVendor);
}

TEST(PermissionTest, TheAnswerComesLaterOnMain) {
    using enum platform::Authorization;
    MainLoopDispatch dispatch(std::make_shared<CountingLog>());
    struct Case {
        bool usesCamera, granted;
        platform::Authorization wanted;
    };
    for (const Case& c : {Case{false, false, authorized}, {true, false, denied}, {true, true, authorized}}) {
        CameraPermissions permissions(c.usesCamera, c.granted, dispatch);
        EXPECT_EQ(permissions.camera(), c.wanted);
        int answers = 0;
        bool allowed = false;
        permissions.requestCamera([&](bool granted) {
            ++answers;
            allowed = granted;
        });
        EXPECT_EQ(answers, 0);
        while (answers == 0)
            g_main_context_iteration(nullptr, true);
        EXPECT_EQ(allowed, c.wanted == authorized);
    }
}

} // namespace
} // namespace kestrin::gtk
