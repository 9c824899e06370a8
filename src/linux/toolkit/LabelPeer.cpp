#include "linux/toolkit/LabelPeer.h"

#include "linux/toolkit/ValidText.h"

namespace kestrin::gtk {

void LabelPeer::setText(const std::string& text) {
    gtk_label_set_text(GTK_LABEL(box().content()), validText(text).get());
}

} // namespace kestrin::gtk
