#include "platform/Widgets.h"

#include <utility>

namespace kestrin::platform {

ImageView::ImageView(std::unique_ptr<ImageViewPeer> peer)
    : View(std::move(peer)), m_imagePeer(static_cast<ImageViewPeer&>(View::peer())) {}

void ImageView::setImage(const Image& image) {
    m_image = image;
    m_imagePeer.setImage(image);
}

Label::Label(std::unique_ptr<LabelPeer> peer)
    : View(std::move(peer)), m_labelPeer(static_cast<LabelPeer&>(View::peer())) {}

void Label::setText(const std::string& text) {
    m_text = text;
    m_labelPeer.setText(text);
}

Button::Button(std::unique_ptr<ButtonPeer> peer)
    : View(std::move(peer)), m_buttonPeer(static_cast<ButtonPeer&>(View::peer())) {}

void Button::onClick(std::function<void()> clicked) { m_buttonPeer.onClick(std::move(clicked)); }

Spinner::Spinner(std::unique_ptr<SpinnerPeer> peer)
    : View(std::move(peer)), m_spinnerPeer(static_cast<SpinnerPeer&>(View::peer())) {}

void Spinner::setColor(const Color& color) {
    m_color = color;
    m_spinnerPeer.setColor(color);
}

} // namespace kestrin::platform
