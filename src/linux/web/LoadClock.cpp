#include "linux/web/LoadClock.h"

#include <utility>

namespace kestrin::gtk {

namespace {
double now() { return static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC; }
} // namespace

LoadClock::LoadClock(WebKitWebView* view, std::function<void()> expired) : m_expired(std::move(expired)) {
    m_signals.emplace_back(view, "load-changed",
                           G_CALLBACK(+[](WebKitWebView* changed, WebKitLoadEvent event, LoadClock* self) {
                               self->onChanged(changed, event);
                           }),
                           this);
    m_signals.emplace_back(
        view, "notify::estimated-load-progress",
        G_CALLBACK(+[](WebKitWebView*, GParamSpec*, LoadClock* self) { self->noteProgress(); }), this);
}

void LoadClock::arm(double seconds) {
    m_isArmed = true;
    m_limit = seconds;
    pause();
}

// The start of WebKit's processes is not the server's silence. A load that is given up, for a newer one or to
// be repeated, finishes before the next one starts.
void LoadClock::onChanged(WebKitWebView* view, WebKitLoadEvent event) {
    noteProgress();
    if (event == WEBKIT_LOAD_FINISHED)
        pause();
    else if (event == WEBKIT_LOAD_STARTED && m_isArmed)
        wait(m_limit);
    else if (event == WEBKIT_LOAD_COMMITTED && m_isArmed)
        watchDocument(webkit_web_view_get_main_resource(view));
}

/// `document` is null when it comes from nowhere, as an empty page does.
void LoadClock::watchDocument(WebKitWebResource* document) {
    m_document = GRef<WebKitWebResource>::ref(document);
    m_documentSize = 0;
    if (document)
        m_documentEnd =
            SignalHandler(document, "finished", G_CALLBACK(+[](WebKitWebResource*, LoadClock* self) {
                              self->m_isArmed = false;
                              self->pause();
                          }),
                          this);
}

void LoadClock::noteProgress() { m_lastProgress = now(); }

void LoadClock::pause() {
    if (m_source)
        g_source_remove(std::exchange(m_source, 0));
    g_cancellable_cancel(m_asking.get());
    m_document.reset();
}

void LoadClock::wait(double seconds) {
    m_source = g_timeout_add(
        static_cast<guint>(seconds * 1000) + 1,
        [](gpointer self) -> gboolean {
            static_cast<LoadClock*>(self)->check();
            return G_SOURCE_REMOVE;
        },
        this);
}

void LoadClock::check() {
    m_source = 0;
    const double left = m_lastProgress + m_limit - now();
    if (left > 0)
        wait(left);
    else if (m_document)
        askForDocumentSize();
    else
        m_expired();
}

// WebKit's estimate stays at one half, without a word, when the size of a document is not known beforehand.
void LoadClock::askForDocumentSize() {
    m_asking = GRef<GCancellable>::adopt(g_cancellable_new());
    const auto answered = [](GObject* document, GAsyncResult* result, gpointer self) {
        gsize size = 0;
        GFailure failure;
        const GText data(reinterpret_cast<char*>(webkit_web_resource_get_data_finish(
            WEBKIT_WEB_RESOURCE(document), result, &size, failure.out())));
        // A cancelled question may be answered after the clock is gone.
        if (!g_error_matches(failure.error(), G_IO_ERROR, G_IO_ERROR_CANCELLED))
            static_cast<LoadClock*>(self)->onDocumentSize(size);
    };
    webkit_web_resource_get_data(m_document.get(), m_asking.get(), answered, this);
}

void LoadClock::onDocumentSize(gsize size) {
    if (size == std::exchange(m_documentSize, size))
        return m_expired();
    noteProgress();
    wait(m_limit);
}

} // namespace kestrin::gtk
