#include "linux/toolkit/ShareSheet.h"

#include "linux/toolkit/Alert.h"
#include "linux/toolkit/Email.h"
#include "linux/toolkit/ModalWindow.h"
#include "linux/toolkit/Resources.h"
#include "linux/toolkit/SharedPicture.h"
#include "linux/toolkit/Texture.h"
#include "linux/toolkit/ValidText.h"

#include <utility>

namespace kestrin::gtk {

namespace {

constexpr const char* kFileName = "Kestrin.jpg";
constexpr const char* kFileType = "image/jpeg";
constexpr int kWidth = 380, kHeightWithPicture = 560; // points, however large the picture is

template <class Widget>
Widget* part(GtkBuilder* builder, const char* name) {
    return reinterpret_cast<Widget*>(gtk_builder_get_object(builder, name));
}

GRef<GdkContentProvider> clipboardContent(const platform::Image& image, const std::string& text) {
    std::vector<GdkContentProvider*> forms; // the union takes them over
    if (const auto texture = makeTexture(image))
        forms.push_back(gdk_content_provider_new_typed(GDK_TYPE_TEXTURE, texture.get()));
    if (!text.empty())
        forms.push_back(gdk_content_provider_new_typed(G_TYPE_STRING, validText(text).get()));
    return GRef<GdkContentProvider>::adopt(gdk_content_provider_new_union(forms.data(), forms.size()));
}

} // namespace

/// Tells of failures, also when the sheet is gone. Thread: main.
struct ShareSheet::Reporter {
    GWeak<GtkWindow> parent;
    std::shared_ptr<platform::LogSink> log;

    void report(const std::string& failure) const {
        log->write("Kestrin - The picture cannot be shared: " + failure);
        showAlert(parent.lock().get(), "Oops!", "The picture cannot be shared.\n\n" + failure, "OK");
    }
};

void ShareSheet::present(GtkWindow* parent, const std::vector<platform::ShareItem>& items,
                         platform::Dispatch& dispatch, std::shared_ptr<Activity> activity,
                         std::shared_ptr<platform::LogSink> log) {
    const auto reporter = std::make_shared<Reporter>();
    reporter->parent.set(parent);
    reporter->log = std::move(log);
    GtkWindow* const window = newModalWindow(parent, "Share");
    const auto destroy = [](gpointer sheet) { delete static_cast<ShareSheet*>(sheet); };
    g_object_set_data_full(G_OBJECT(window), "kestrin-share-sheet",
                           new ShareSheet(window, items, dispatch, std::move(activity), reporter), destroy);
    gtk_window_present(window);
}

ShareSheet::ShareSheet(GtkWindow* window, const std::vector<platform::ShareItem>& items,
                       platform::Dispatch& dispatch, std::shared_ptr<Activity> activity,
                       std::shared_ptr<Reporter> reporter)
    : m_window(window), m_dispatch(dispatch), m_activity(std::move(activity)),
      m_reporter(std::move(reporter)) {
    take(items);
    fill();
}

void ShareSheet::take(const std::vector<platform::ShareItem>& items) {
    for (const auto& item : items) {
        if (const auto* image = std::get_if<platform::Image>(&item); image && !m_image.isValid())
            m_image = *image;
        if (const auto* text = std::get_if<std::string>(&item); text && !text->empty())
            m_text += (m_text.empty() ? "" : "\n") + *text;
    }
}

void ShareSheet::fill() {
    const auto builder = GRef<GtkBuilder>::adopt(
        gtk_builder_new_from_resource(resourcePath("interfaces/ShareSheet.ui").c_str()));
    gtk_window_set_child(m_window, part<GtkWidget>(builder.get(), "sheet"));
    GtkPicture* const picture = part<GtkPicture>(builder.get(), "picture");
    gtk_window_set_default_size(m_window, kWidth, m_image.isValid() ? kHeightWithPicture : -1);
    gtk_picture_set_paintable(picture, GDK_PAINTABLE(makeTexture(m_image).get()));
    gtk_widget_set_visible(GTK_WIDGET(picture), m_image.isValid());
    const bool isEmpty = !m_image.isValid() && m_text.empty();
    GtkLabel* const label = part<GtkLabel>(builder.get(), "text");
    gtk_label_set_text(label, validText(isEmpty ? "There is nothing to share." : m_text).get());
    gtk_widget_set_visible(GTK_WIDGET(label), isEmpty || !m_text.empty());
    connect(builder.get(), "save", m_image.isValid(), [](ShareSheet* sheet) { sheet->askWhereToSave(); });
    connect(builder.get(), "copy", !isEmpty, [](ShareSheet* sheet) { sheet->copy(); });
    connect(builder.get(), "open", m_image.isValid(), [](ShareSheet* sheet) { sheet->askWhatOpens(); });
    connect(builder.get(), "email", !isEmpty, [](ShareSheet* sheet) { sheet->sendByEmail(); });
    connect(builder.get(), "close", true, [](ShareSheet* sheet) { sheet->close(); });
}

void ShareSheet::connect(GtkBuilder* builder, const char* button, bool isOffered,
                         void (*clicked)(ShareSheet*)) {
    GtkWidget* const widget = part<GtkWidget>(builder, button);
    gtk_widget_set_sensitive(widget, isOffered);
    g_signal_connect_swapped(widget, "clicked", G_CALLBACK(clicked), this);
}

void ShareSheet::closeAfterDialog() {
    // Not at once: when both windows go, a window manager may give the focus to nobody.
    m_activity->whenActive([window = GRef<GtkWindow>::ref(m_window)] { gtk_window_close(window.get()); });
}

void ShareSheet::askWhereToSave() {
    GtkFileChooserNative* const chooser = gtk_file_chooser_native_new(
        "Save the Picture", m_window, GTK_FILE_CHOOSER_ACTION_SAVE, "_Save", "_Cancel");
    gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(chooser), kFileName);
    const auto chosen = +[](GtkNativeDialog* dialog, int response, ShareSheet* sheet) {
        const auto kept = std::exchange(sheet->m_chooser, {});
        if (response == GTK_RESPONSE_ACCEPT)
            sheet->save(GRef<GFile>::adopt(gtk_file_chooser_get_file(GTK_FILE_CHOOSER(dialog))));
    };
    m_chooser = GRef<GtkNativeDialog>::adopt(GTK_NATIVE_DIALOG(chooser));
    m_chosen = {chooser, "response", G_CALLBACK(chosen), this};
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser));
}

void ShareSheet::save(const GRef<GFile>& file) {
    m_dispatch.globalAsync([image = m_image, file, reporter = m_reporter, &main = m_dispatch] {
        if (const auto failure = writePicture(image, file.get()))
            main.mainAsync([reporter, failure] { reporter->report(*failure); });
    });
    closeAfterDialog();
}

void ShareSheet::copy() {
    gdk_clipboard_set_content(gtk_widget_get_clipboard(GTK_WIDGET(m_window)),
                              clipboardContent(m_image, m_text).get());
    close();
}

void ShareSheet::askWhatOpens() {
    constexpr auto kFlags = GtkDialogFlags(GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT);
    GtkWidget* const chooser = gtk_app_chooser_dialog_new_for_content_type(m_window, kFlags, kFileType);
    const auto chosen = +[](GtkDialog* dialog, int response, ShareSheet* sheet) {
        const auto program = GRef<GAppInfo>::adopt(gtk_app_chooser_get_app_info(GTK_APP_CHOOSER(dialog)));
        gtk_window_destroy(GTK_WINDOW(dialog));
        if (response == GTK_RESPONSE_OK && program)
            sheet->openWith(program);
    };
    g_signal_connect(chooser, "response", G_CALLBACK(chosen), this);
    gtk_window_present(GTK_WINDOW(chooser));
}

void ShareSheet::openWith(const GRef<GAppInfo>& program) {
    handOver([program, reporter = m_reporter](const GRef<GFile>& picture) {
        GList files{picture.get(), nullptr, nullptr};
        GFailure failure;
        if (!g_app_info_launch(program.get(), &files, nullptr, failure.out()))
            reporter->report(failure.text());
    });
    closeAfterDialog();
}

void ShareSheet::sendByEmail() {
    const auto compose = [text = m_text, reporter = m_reporter,
                          &main = m_dispatch](const GRef<GFile>& picture) {
        composeEmail({text, picture}, {}, main,
                     [reporter](const std::string& reason) { reporter->report(reason); });
    };
    m_image.isValid() ? handOver(compose) : compose({});
    close();
}

void ShareSheet::handOver(const std::function<void(const GRef<GFile>& picture)>& take) {
    m_dispatch.globalAsync([image = m_image, take, reporter = m_reporter, &main = m_dispatch] {
        main.mainAsync([file = writeTemporaryPicture(image, kFileName), take, reporter] {
            file ? take(file) : reporter->report("There is no room for a temporary file.");
        });
    });
}

} // namespace kestrin::gtk
