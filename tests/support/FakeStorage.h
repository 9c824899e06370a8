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
                                              const std::string& type) const override {
        return find(resources, type.empty() ? name : name + "." + type);
    }
    std::optional<std::string> information(const std::string& key) const override { return find(info, key); }
    std::string localizedText(const std::string& text) const override {
        return find(translations, text).value_or(text);
    }
    std::optional<std::string> readDocument(const std::string& name) const override {
        const std::lock_guard lock(m_mutex);
        return find(m_documents, name);
    }
    bool writeDocument(const std::string& name, std::span<const std::uint8_t> bytes) override {
        const std::lock_guard lock(m_mutex);
        m_documents[name] = {bytes.begin(), bytes.end()};
        return true;
    }
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
    std::vector<std::string> documentNames() const {
        const std::lock_guard lock(m_mutex);
        std::vector<std::string> names;
        for (const auto& [name, bytes] : m_documents)
            names.push_back(name);
        return names;
    }

    using Texts = std::map<std::string, std::string>;
    Texts resources; ///< "name.type" to bytes
    Texts info, translations;
    std::optional<std::string> photoFailure;

  private:
    static std::optional<std::string> find(const Texts& values, const std::string& key) {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    mutable std::mutex m_mutex;
    Texts m_documents;
    std::vector<std::vector<std::uint8_t>> m_photos;
};

} // namespace kestrin::test
