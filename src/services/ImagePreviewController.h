#pragma once

#include "platform/Application.h"
#include "platform/Widgets.h"

#include <memory>
#include <vector>

namespace kestrin {

/// A picture in front of everything, with a button that shares it and one that takes it away. Thread: main.
class ImagePreviewController : public platform::ViewController,
                               public std::enable_shared_from_this<ImagePreviewController> {
  public:
    static std::shared_ptr<ImagePreviewController> init();

    void setPreviewImage(const platform::Image& image) { _previewImage = image; }
    /// The items do not count: the picture alone is shared.
    ImagePreviewController& setup(const std::vector<platform::ShareItem>&) { return *this; }

    std::shared_ptr<platform::View> view() override;
    void viewDidAppear() override;

  private:
    ImagePreviewController() = default;
    void loadView();
    void viewDidLoad();
    void cancelButtonClick();
    void shareButtonClick();

    platform::Image _previewImage;
    std::weak_ptr<platform::View> _imageHolder;
    std::weak_ptr<platform::Button> _cancelButton, _shareButton;
    std::weak_ptr<platform::ImageView> _imageView;
    std::weak_ptr<platform::View> _safeView;
    std::shared_ptr<platform::View> m_view;
};

} // namespace kestrin
