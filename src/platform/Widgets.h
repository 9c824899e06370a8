#pragma once

#include "platform/Image.h"
#include "platform/View.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kestrin::platform {

class ImageViewPeer : public ViewPeer {
  public:
    virtual void setImage(const Image& image) = 0;
};

/// Shows a picture, aspect kept; its interface says whether it covers the view or lies within. Thread: main.
class ImageView : public View {
  public:
    explicit ImageView(std::unique_ptr<ImageViewPeer> peer);
    const Image& image() const { return m_image; }
    void setImage(const Image& image);

  private:
    ImageViewPeer& m_imagePeer;
    Image m_image;
};

class LabelPeer : public ViewPeer {
  public:
    virtual void setText(const std::string& text) = 0;
};

/// Shows text (UTF-8). Thread: main.
class Label : public View {
  public:
    explicit Label(std::unique_ptr<LabelPeer> peer);
    const std::string& text() const { return m_text; }
    void setText(const std::string& text);

  private:
    LabelPeer& m_labelPeer;
    std::string m_text;
};

class ButtonPeer : public ViewPeer {
  public:
    virtual void onClick(std::function<void()> clicked) = 0;
};

/// Can be clicked. Thread: main.
class Button : public View {
  public:
    explicit Button(std::unique_ptr<ButtonPeer> peer);
    /// Instead of what was called before.
    void onClick(std::function<void()> clicked);

  private:
    ButtonPeer& m_buttonPeer;
};

class SpinnerPeer : public ViewPeer {
  public:
    virtual void setColor(const Color& color) = 0;
};

/// Shows that something is going on. Thread: main.
class Spinner : public View {
  public:
    explicit Spinner(std::unique_ptr<SpinnerPeer> peer);
    const Color& color() const { return m_color; }
    void setColor(const Color& color);

  private:
    SpinnerPeer& m_spinnerPeer;
    Color m_color = kDarkGray;
};

/// A loaded interface resource: its root view, and its named parts.
struct Interface {
    std::shared_ptr<View> root; ///< empty when the resource is missing
    std::map<std::string, std::shared_ptr<View>> parts;

    /// Empty when there is no such part of that kind.
    template <class T>
    std::shared_ptr<T> part(const std::string& name) const {
        const auto found = parts.find(name);
        return found == parts.end() ? nullptr : std::dynamic_pointer_cast<T>(found->second);
    }
};

/// Makes the toolkit's side of views. Thread: main.
class ViewToolkit {
  public:
    virtual ~ViewToolkit() = default;
    /// `view` outlives its peer.
    virtual std::unique_ptr<ViewPeer> makePeer(View& view) = 0;
    virtual Interface loadInterface(const std::string& name) = 0;
};

} // namespace kestrin::platform
