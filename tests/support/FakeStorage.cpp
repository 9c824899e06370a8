#include "support/FakeStorage.h"

namespace kestrin::test {

namespace {

std::optional<std::string> find(const std::map<std::string, std::string>& values, const std::string& key) {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

std::optional<std::string> FakeStorage::bundleResource(const std::string& name,
                                                       const std::string& type) const {
    return find(resources, type.empty() ? name : name + "." + type);
}

std::optional<std::string> FakeStorage::information(const std::string& key) const { return find(info, key); }

std::optional<std::string> FakeStorage::readDocument(const std::string& name) const {
    const std::lock_guard lock(m_mutex);
    return find(m_documents, name);
}

bool FakeStorage::writeDocument(const std::string& name, std::span<const std::uint8_t> bytes) {
    const std::lock_guard lock(m_mutex);
    m_documents[name] = {bytes.begin(), bytes.end()};
    return true;
}

std::vector<std::string> FakeStorage::documentNames() const {
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> names;
    for (const auto& [name, bytes] : m_documents)
        names.push_back(name);
    return names;
}

} // namespace kestrin::test
