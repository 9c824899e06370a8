#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

namespace kestrin::gtk {

/// A question to the person. A letter after `_` in a label answers it together with Alt.
struct Question {
    std::string title; ///< of the window
    std::string headline;
    std::string text;
    std::string yes, no; ///< the buttons' labels
};

enum class Reply { yes, no, dismissed };

/// Asks over `parent` (or by itself when null); nothing else of the application takes input until the answer.
/// Enter means no, Escape dismisses the question, and so does the end of `parent`. Returns at once; the
/// answer comes once, later. Thread: main.
void ask(GtkWindow* parent, const Question& question, std::function<void(Reply)> answer);

} // namespace kestrin::gtk
