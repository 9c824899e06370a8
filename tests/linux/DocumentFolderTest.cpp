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

/// Lets this process write files of so many bytes and no larger ones.
class FileLimit {
  public:
    explicit FileLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

  private:
    void (*m_handler)(int);
    rlimit m_before{};
};

} // namespace

TEST(DocumentFolder, KeepsTheFormerFileWhenTheNextCannotBeWritten) {
    const kestrin::test::TemporaryFolder folder;
    const DocumentFolder documents(folder.path());
    EXPECT_EQ(documents.read("a.jpg"), std::nullopt);
    EXPECT_TRUE(documents.write("a.jpg", Bytes(300, 'x')));
    EXPECT_TRUE(documents.write("a.jpg", Bytes{'y', 0, 'z'}));
    {
        const FileLimit limit(1000);
        EXPECT_FALSE(documents.write("a.jpg", Bytes(100'000, 'x')));
    }
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
          std::string("sub/../../secret.jpg"), std::string(".."), std::string("."), std::string(),
          std::string("secret\0.jpg", 11), std::string(5000, 'n')}) {
        EXPECT_EQ(documents.read(name), std::nullopt) << name;
        EXPECT_FALSE(documents.write(name, Bytes{1})) << name;
    }
    EXPECT_EQ(filesIn(around.path()), before);
}

} // namespace kestrin::gtk::test
