#pragma once

#include "platform/Widgets.h"

#include <memory>
#include <string>

namespace kestrin {

/// A view that shows and hides itself over the whole of its parent. Made with `makeView`. Thread: any, unless
/// said otherwise; off main the operations re-post themselves there.
class KestrinCustomView : public platform::View {
  public:
    /// At once.
    void show();
    /// Half a second later fades out over 0.3 seconds; a `show` meanwhile does not stop it.
    void hide();
    void hideInstant();
    void addToParentView(const std::shared_ptr<platform::View>& parent);
    void removeFromParentView();
    void clipToParent();

    /// Puts the view on top of the parent, over the whole of it, also when the parent changes its size.
    /// Thread: main, as for the next two.
    static void addClipConstraints(const std::shared_ptr<platform::View>& view,
                                   const std::shared_ptr<platform::View>& parent);
    static void removeFromParent(const std::shared_ptr<platform::View>& view);
    /// Over the whole of the parent, if there is one.
    static void clipToParent(const std::shared_ptr<platform::View>& view);

  protected:
    /// A view's hold on itself, for what it posts.
    template <class CustomView>
    static std::shared_ptr<CustomView> shared(CustomView& view) {
        return std::static_pointer_cast<CustomView>(view.shared_from_this());
    }

    /// Fills the view with an interface resource. Without such a resource the view stays empty.
    platform::Interface loadContent(const std::string& name);
};

} // namespace kestrin
