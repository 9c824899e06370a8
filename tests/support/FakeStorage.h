#pragma once

#include "platform/Storage.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace kestrin::test {

/// Bundle resources, information, documents and photos in memory. Resources are set up before other threads
/// read.
class FakeStorage : public platform::Storage {
  public:
    std::optional<std::string> bundleResource(const std::string& name,
                                              const std::string& type) const override;
    std::optional<std::string> information(const std::string& key) const override;
    std::string localizedText(const std::string& text) const override {
        const auto found = translations.find(text);
        return found == translations.end() ? text : found->second;
    }
    std::optional<std::string> readDocument(const std::string& name) const override;
    bool writeDocument(const std::string& name, std::span<const std::uint8_t> bytes) override;
    /// Fails with `photoFailure` when the test sets one.
    std::optional<std::string> addPhoto(std::span<const std::uint8_t> jpeg,
                                        std::chrono::system_clock::time_point) override {
        const std::lock_guard lock(m_mutex);
        if (!photoFailure)
            m_photos.emplace_back(jpeg.begin(), jpeg.end());
        return photoFailure;
    }
    std::vector<std::vector<std::uint8_t>> photos() const {
        const std::lock_guard lock(m_mutex);
        return m_photos;
    }
    /// The names of the documents, in order.
    std::vector<std::string> documentNames() const;

    std::map<std::string, std::string> resources; ///< "name.type" to bytes
    std::map<std::string, std::string> info, translations;
    std::optional<std::string> photoFailure;

  private:
    mutable std::mutex m_mutex;
    std::map<std::string, std::string> m_documents;
    std::vector<std::vector<std::uint8_t>> m_photos;
};

} // namespace kestrin::test
