#pragma once

#include "platform/Dispatch.h"
#include "platform/Matrix.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kestrin::platform {

/// Red, green, blue, alpha in [0, 1], not premultiplied.
struct Color {
    float red = 0, green = 0, blue = 0, alpha = 0;
    bool operator==(const Color&) const = default;
};
inline constexpr Color kClear{0, 0, 0, 0};
inline constexpr Color kWhite{1, 1, 1, 1};
inline constexpr Color kDarkGray{1.F / 3, 1.F / 3, 1.F / 3, 1};

struct Border {
    double cornerRadius = 0, width = 0; ///< points
    Color color;
    bool operator==(const Border&) const = default;
};

class View;

/// A view as the toolkit shows it. It mirrors what it is told and keeps no rules of its own. Thread: main.
class ViewPeer {
  public:
    virtual ~ViewPeer() = default;
    /// Points, in the parent's coordinates, origin top left.
    virtual void setFrame(const Rect& frame) = 0;
    virtual void setHidden(bool hidden) = 0;
    /// In [0, 1]; below 1 the view takes no clicks, a page at 0 only.
    virtual void setOpacity(double opacity) = 0;
    virtual void setBackground(const Color& color) = 0;
    virtual void setBorder(const Border& border) = 0;
    /// Bottom to top. A view taken out and put back within one main-loop turn stays on the screen.
    virtual void setSubviews(const std::vector<ViewPeer*>& subviews) = 0;
};

/// A rectangle in a tree of rectangles; all rules about views live here and the peer mirrors the outcome.
/// Made with `makeView`. Thread: main.
class View : public std::enable_shared_from_this<View> {
  public:
    enum Resizing : unsigned { kFlexibleWidth = 2, kFlexibleHeight = 16 };

    /// A plain view.
    View();
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    const Rect& frame() const { return m_frame; }
    /// Subviews with flexible sizes grow and shrink by what this view does.
    void setFrame(const Rect& frame);
    Rect bounds() const { return {{}, m_frame.size}; }
    unsigned resizing() const { return m_resizing; }
    void setResizing(unsigned mask) { m_resizing = mask; }

    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden);
    /// What is shown now, also in the middle of a fade. Setting it does not interrupt a fade.
    double opacity() const { return m_opacity; }
    void setOpacity(double opacity);
    const Color& background() const { return m_background; }
    virtual void setBackground(const Color& color);
    const Border& border() const { return m_border; }
    void setBorder(const Border& border);

    /// Fades from the present opacity, paced by the main queue's clock. `done` is told whether the fade ran
    /// to its end; a newer fade interrupts this one, nothing else does. It is not called when the view dies
    /// first.
    void animateOpacity(double target, double seconds, std::function<void(bool finished)> done);

    /// Puts `child` on top; takes it out of its present parent first, this one included.
    void addSubview(std::shared_ptr<View> child);
    void removeFromSuperview();
    std::shared_ptr<View> superview() const { return m_superview.lock(); }
    const std::vector<std::shared_ptr<View>>& subviews() const { return m_subviews; }

    /// The toolkit gave this view another size than its frame's (a view at the root of the tree). Follows it.
    virtual void toolkitResized(const Size& size);

    ViewPeer& peer() const { return *m_peer; }

  protected:
    explicit View(std::unique_ptr<ViewPeer> peer);

  private:
    struct Fade;
    void stepFade();
    void removeSubview(const View& child);
    void subviewsChanged();

    std::unique_ptr<ViewPeer> m_peer;
    Rect m_frame;
    unsigned m_resizing = 0;
    bool m_hidden = false;
    double m_opacity = 1;
    Color m_background = kClear;
    Border m_border;
    std::weak_ptr<View> m_superview;
    std::vector<std::shared_ptr<View>> m_subviews;
    std::unique_ptr<Fade> m_fade;
};

/// Destroys on main: at once when called there, posted otherwise. Thread: any.
void releaseOnMain(Task destroy);

/// Makes a view whose last release, on whatever thread, destroys it on main.
template <class T, class... Arguments>
std::shared_ptr<T> makeView(Arguments&&... arguments) {
    return std::shared_ptr<T>(new T(std::forward<Arguments>(arguments)...),
                              [](T* view) { releaseOnMain([view] { delete view; }); });
}

} // namespace kestrin::platform
