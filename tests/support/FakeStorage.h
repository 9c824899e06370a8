#pragma once

#include "platform/Storage.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace kestrin::test {

/// Bundle resources, information and documents in memory. Resources are set up before other threads read.
class FakeStorage : public platform::Storage {
  public:
    std::optional<std::string> bundleResource(const std::string& name,
                                              const std::string& type) const override;
    std::optional<std::string> information(const std::string& key) const override;
    std::optional<std::string> readDocument(const std::string& name) const override;
    bool writeDocument(const std::string& name, std::span<const std::uint8_t> bytes) override;
    /// The names of the documents, in order.
    std::vector<std::string> documentNames() const;

    std::map<std::string, std::string> resources; ///< "name.type" to bytes
    std::map<std::string, std::string> info;

  private:
    mutable std::mutex m_mutex;
    std::map<std::string, std::string> m_documents;
};

} // namespace kestrin::test
