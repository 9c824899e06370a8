#include "linux/storage/DocumentFolder.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <iterator>
#include <sys/resource.h>
#include <vector>

namespace kestrin::gtk::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

std::ptrdiff_t filesIn(const std::filesystem::path& folder) {
    return std::distance(std::filesystem::recursive_directory_iterator(folder), {});
}

} // namespace

TEST(DocumentFolder, KeepsTheFormerFileWhenTheNextCannotBeWritten) {
    const kestrin::test::TemporaryFolder folder;
    const DocumentFolder documents(folder.path());
    EXPECT_EQ(documents.read("a.jpg"), std::nullopt);
    EXPECT_TRUE(documents.write("a.jpg", Bytes(300, 'x')));
    EXPECT_TRUE(documents.write("a.jpg", Bytes{'y', 0, 'z'}));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_FALSE(documents.write("a.jpg", Bytes(100'000, 'x')));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(documents.read("a.jpg"), std::string("y\0z", 3));
    EXPECT_EQ(filesIn(folder.path()), 1) << "something was left behind";
}

TEST(DocumentFolder, NoNameLeadsOutOfIt) {
    const kestrin::test::TemporaryFolder around;
    around.write("secret.jpg", "secret");
    around.write("documents/sub/b.jpg", "b");
    const DocumentFolder documents(around / "documents");
    const auto before = filesIn(around.path());
    for (const std::string& name :
         {std::string("../secret.jpg"), (around / "secret.jpg").string(), std::string("sub/b.jpg"),
          std::string(".."), std::string(), std::string("secret\0.jpg", 11), std::string(5000, 'n')}) {
        EXPECT_EQ(documents.read(name), std::nullopt) << name;
        EXPECT_FALSE(documents.write(name, Bytes{1})) << name;
    }
    EXPECT_EQ(filesIn(around.path()), before);
}

} // namespace kestrin::gtk::test
