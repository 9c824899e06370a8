#include "linux/toolkit/Email.h"

#include "linux/toolkit/ValidText.h"

#include <fcntl.h>
#include <memory>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kestrin::gtk {

namespace {

using Failed = std::function<void(const std::string& reason)>;

GText pathOf(const Email& email) { return GText(g_file_get_path(email.attachment.get())); }

/// The portal takes open files, not names, as it may not see the same ones.
void attach(PortalCall& call, const Email& email) {
    const int file = open(pathOf(email).get(), O_PATH | O_CLOEXEC);
    if (file < 0)
        return;
    call.files = GRef<GUnixFDList>::adopt(g_unix_fd_list_new());
    const int index = g_unix_fd_list_append(call.files.get(), file, nullptr);
    close(file); // the list has its own
    GVariantBuilder files;
    g_variant_builder_init(&files, G_VARIANT_TYPE("ah"));
    g_variant_builder_add(&files, "h", index);
    g_variant_dict_insert_value(call.options.get(), "attachment_fds", g_variant_builder_end(&files));
}

PortalCall callFor(const Email& email) {
    PortalCall call{"org.freedesktop.portal.Email", "ComposeEmail", true};
    if (!email.body.empty())
        g_variant_dict_insert(call.options.get(), "body", "s", validText(email.body).get());
    if (email.attachment)
        attach(call, email);
    return call;
}

void ended(GObject* program, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Failed> failed(static_cast<Failed*>(data));
    if (!g_subprocess_wait_check_finish(G_SUBPROCESS(program), result, nullptr))
        (*failed)("No e-mail program could be opened.");
}

void runProgram(const Email& email, const Failed& failed) {
    std::vector<const char*> arguments{"xdg-email"};
    const GText body = validText(email.body), path = email.attachment ? pathOf(email) : nullptr;
    if (!email.body.empty())
        arguments.insert(arguments.end(), {"--body", body.get()});
    if (path)
        arguments.insert(arguments.end(), {"--attach", path.get()});
    arguments.push_back(nullptr);
    constexpr auto kQuiet =
        GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_SILENCE);
    GFailure failure;
    const auto program = GRef<GSubprocess>::adopt(g_subprocess_newv(arguments.data(), kQuiet, failure.out()));
    if (!program)
        return failed(failure.text());
    g_subprocess_wait_check_async(program.get(), nullptr, ended, new Failed(failed));
}

} // namespace

void composeEmail(const Email& email, const PortalLimits& limits, platform::Dispatch& dispatch,
                  Failed failed) {
    PortalRequest::send(callFor(email), limits, dispatch,
                        [email, failed = std::move(failed)](PortalReply reply) {
                            if (reply == PortalReply::unavailable)
                                runProgram(email, failed);
                        });
}

} // namespace kestrin::gtk
