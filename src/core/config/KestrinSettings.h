#pragma once

#include "platform/Image.h"

#include <boost/json/fwd.hpp>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kestrin {

/// A key string that names no template; what() holds name and reason.
class InvalidSettings : public std::runtime_error {
  public:
    InvalidSettings();
    static constexpr const char* kName = "Invalid Settings";
    static std::string reason();
};

/// Which page a view shows and how it starts. A plain value; one object is used by one thread at a time.
class KestrinSettings {
  public:
    /// The defaults.
    KestrinSettings();
    /// Base64 of a JSON object; throws InvalidSettings when it is none or has no "baseUrl".
    static KestrinSettings initWithKeyString(std::optional<std::string_view> keyString);
    /// A copy with its address normalised; null gives the defaults.
    static KestrinSettings initWithSettings(const KestrinSettings* settings);
    /// The number says nothing; like the defaults, but not in debug mode.
    static KestrinSettings initWithKeyInt(int key);

    bool mAutoStart = false;
    bool mTemplateDestroy = false;
    bool mTemplateBlocked = false;
    bool mDebugEnabled = true;
    std::string mUrl; ///< of the template
    /// Base64 of a JSON list of start-up commands for the template.
    std::optional<std::string> mCommand;
    platform::Image loadingBG; ///< of the loading overlay; may be absent

    void setAutoStart(bool value) { mAutoStart = value; }
    /// Kept as it is, not normalised.
    void setTemplateUrl(std::string url) { mUrl = std::move(url); }
    void setDestroyTemplateOnDestroy(bool value) { mTemplateDestroy = value; }
    void setBlockTemplateControl(bool value) { mTemplateBlocked = value; }
    void setDebugEnabled(bool value) { mDebugEnabled = value; }
    void setLoadingBackgroundImage(platform::Image image) { loadingBG = std::move(image); }

    bool getAutoStart() const { return mAutoStart; }
    const std::string& getTemplateUrl() const { return mUrl; }
    bool getTemplateDestroy() const { return mTemplateDestroy; }
    bool getTemplateBlocked() const { return mTemplateBlocked; }
    bool getDebugEnabled() const { return mDebugEnabled; }
    const std::optional<std::string>& getTemplateCommand() const { return mCommand; }
    const platform::Image& getLoadingBackgroundImage() const { return loadingBG; }

    /// The server's origin: "https://" and the template's host without port, or "https://" alone.
    std::string getHostUrl() const;
    /// What the first start-up command names; none when it names nothing.
    std::optional<std::string> getApplicationID() const;
    /// Makes the address begin with "https://".
    void reformatUrl();

    /// What the host application wants the page to know, such as the parameters of the address that opened
    /// it; one for the process, null at first. Thread: any.
    static std::shared_ptr<const boost::json::value> externalIntent();
    static void setExternalIntent(std::shared_ptr<const boost::json::value> intent);
};

} // namespace kestrin
