#include "support/FakeStorage.h"

#include <random>

namespace kestrin::test {

namespace fs = std::filesystem;

namespace {

std::optional<std::string> find(const std::map<std::string, std::string>& values, const std::string& key) {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

FakeStorage::FakeStorage() {
    std::random_device random;
    do
        m_documents = fs::temp_directory_path() / ("kestrin-test-" + std::to_string(random()));
    while (!fs::create_directory(m_documents));
}

FakeStorage::~FakeStorage() {
    std::error_code ignored;
    fs::remove_all(m_documents, ignored);
}

std::optional<std::string> FakeStorage::bundleResource(const std::string& name,
                                                       const std::string& type) const {
    return find(resources, name + "." + type);
}

std::optional<std::string> FakeStorage::information(const std::string& key) const { return find(info, key); }

} // namespace kestrin::test
