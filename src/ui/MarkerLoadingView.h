#pragma once

#include "ui/KestrinCustomView.h"

namespace kestrin {

/// Covers the camera picture while the trigger pictures load. Thread: any.
class MarkerLoadingView : public KestrinCustomView {
  public:
    /// Thread: main.
    static std::shared_ptr<MarkerLoadingView> initWithFrame(const platform::Rect& frame);

    /// Shows the picture in the background; an absent one does nothing.
    void setBGImage(const platform::Image& image);
    /// Progress is accepted and not drawn.
    void setProgress(float) {}
    void reset() { setProgress(0.0F); }

  private:
    void customInit();

    std::weak_ptr<platform::ImageView> _backgroundImage;
    std::shared_ptr<platform::View> _mainView;
};

} // namespace kestrin
