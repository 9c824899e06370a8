#pragma once

#include "platform/Storage.h"

#include <filesystem>
#include <map>
#include <string>

namespace kestrin::test {

/// Bundle resources and information in memory, documents in a folder that goes with it. Set up before other
/// threads read.
class FakeStorage : public platform::Storage {
  public:
    FakeStorage();
    ~FakeStorage() override;
    FakeStorage(const FakeStorage&) = delete;
    FakeStorage& operator=(const FakeStorage&) = delete;

    std::optional<std::string> bundleResource(const std::string& name,
                                              const std::string& type) const override;
    std::optional<std::string> information(const std::string& key) const override;
    std::filesystem::path documentsDirectory() const override { return m_documents; }

    std::map<std::string, std::string> resources; ///< "name.type" to bytes
    std::map<std::string, std::string> info;

  private:
    std::filesystem::path m_documents;
};

} // namespace kestrin::test
