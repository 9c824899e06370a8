#include "linux/web/NewWebView.h"

#include "linux/toolkit/DebugTopics.h"

#include <cstring>

namespace kestrin::gtk {

namespace {

using Configuration = platform::WebViewConfiguration;

/// Sets what WebKit offers by name only; a version that does not know the name keeps its default.
void setFeature(WebKitSettings* settings, const char* identifier, bool enabled) {
    const GOwned<WebKitFeatureList, webkit_feature_list_unref> features(webkit_settings_get_all_features());
    for (gsize i = 0; i < webkit_feature_list_get_length(features.get()); ++i) {
        WebKitFeature* feature = webkit_feature_list_get(features.get(), i);
        if (std::strcmp(webkit_feature_get_identifier(feature), identifier) == 0)
            webkit_settings_set_feature_enabled(settings, feature, enabled);
    }
}

bool isSet(const Configuration& configuration, const char* preference) {
    const auto found = configuration.preferences.find(preference);
    return found != configuration.preferences.end() && found->second != 0;
}

GRef<WebKitSettings> makeSettings(const Configuration& configuration) {
    auto settings = GRef<WebKitSettings>::adopt(webkit_settings_new());
    g_object_set(settings.get(), //
                 "media-playback-allows-inline", configuration.allowsInlineMediaPlayback,
                 "media-playback-requires-user-gesture", configuration.mediaRequiresUserAction,
                 "enable-write-console-messages-to-stdout", isDebugged(Topic::console),
                 "allow-file-access-from-file-urls", isSet(configuration, "allowFileAccessFromFileURLs"), //
                 nullptr);
    setFeature(settings.get(), "SuppressesIncrementalRendering",
               configuration.suppressesIncrementalRendering);
    setFeature(settings.get(), "AllowsPictureInPictureMediaPlayback", configuration.allowsPictureInPicture);
    return settings;
}

GRef<WebKitWebsitePolicies> makePolicies(const Configuration& configuration) {
    const WebKitAutoplayPolicy autoplay =
        configuration.mediaRequiresUserAction ? WEBKIT_AUTOPLAY_DENY : WEBKIT_AUTOPLAY_ALLOW;
    return GRef<WebKitWebsitePolicies>::adopt(
        webkit_website_policies_new_with_policies("autoplay", autoplay, nullptr));
}

} // namespace

GRef<WebKitWebView> newWebView(const Configuration& configuration, WebKitNetworkSession* session,
                               WebKitWebView* related, WebKitUserContentManager* messages) {
    const GRef<WebKitSettings> settings = makeSettings(configuration);
    const GRef<WebKitWebsitePolicies> policies = makePolicies(configuration);
    const char* const place =
        related ? "related-view" : "network-session"; // a related view brings its session
    void* const owner = related ? static_cast<void*>(related) : session;
    auto view = GRef<WebKitWebView>::refSink(WEBKIT_WEB_VIEW(
        g_object_new(WEBKIT_TYPE_WEB_VIEW, place, owner, "settings", settings.get(), "user-content-manager",
                     messages, "website-policies", policies.get(), nullptr)));
    if (configuration.accessibilityModal)
        gtk_accessible_update_property(GTK_ACCESSIBLE(view.get()), GTK_ACCESSIBLE_PROPERTY_MODAL, true, -1);
    return view;
}

} // namespace kestrin::gtk
