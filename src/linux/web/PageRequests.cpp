#include "linux/web/PageRequests.h"

#include <utility>

namespace kestrin::gtk {

namespace {

constexpr gboolean kHandled = true;

/// The page goes on as if nobody had looked, but may not keep itself from being left.
gboolean closeDialog(WebKitWebView*, WebKitScriptDialog* dialog, PageRequests*) {
    if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM)
        webkit_script_dialog_confirm_set_confirmed(dialog, true);
    return kHandled;
}

/// Camera, place, notifications and the rest: what a page needs of them it gets through Kestrin. The motion
/// sensors are not asked for.
gboolean denyPermission(WebKitWebView*, WebKitPermissionRequest* request, PageRequests*) {
    webkit_permission_request_deny(request);
    return kHandled;
}

/// There is none but the inspector's.
gboolean hideMenu(WebKitWebView* view, WebKitContextMenu*, WebKitHitTestResult*, PageRequests*) {
    return !webkit_settings_get_enable_developer_extras(webkit_web_view_get_settings(view));
}

} // namespace

PageRequests::PageRequests(WebKitWebView* view) {
    answer(view, "script-dialog", closeDialog);
    answer(view, "permission-request", denyPermission);
    answer(
        view, "print", +[](WebKitWebView*, WebKitPrintOperation*, PageRequests*) { return kHandled; });
    answer(view, "context-menu", hideMenu);
    answer(
        view, "run-file-chooser", +[](WebKitWebView*, WebKitFileChooserRequest* request, PageRequests* self) {
            self->keepFileRequest(request);
            return kHandled;
        });
}

template <class Callback>
void PageRequests::answer(WebKitWebView* view, const char* signal, Callback callback) {
    m_signals.emplace_back(view, signal, G_CALLBACK(callback), this);
}

void PageRequests::keepFileRequest(WebKitFileChooserRequest* request) {
    m_pendingFiles.push_back(GRef<WebKitFileChooserRequest>::ref(request));
    if (const auto delegate = m_delegate.lock())
        delegate->didRequestFile();
}

} // namespace kestrin::gtk
