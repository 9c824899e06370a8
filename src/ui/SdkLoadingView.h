#pragma once

#include "ui/KestrinCustomView.h"

namespace kestrin {

/// Covers everything while the experience starts. Thread: any.
class SdkLoadingView : public KestrinCustomView {
  public:
    /// Thread: main.
    static std::shared_ptr<SdkLoadingView> initWithFrame(const platform::Rect& frame);

    /// Shows the picture behind a white spinner; an absent one does nothing.
    void setBGImage(const platform::Image& image);
    /// Progress is accepted and not drawn.
    void setProgress(float) {}
    void reset() { setProgress(0.0F); }

  private:
    void customInit();

    std::weak_ptr<platform::ImageView> _backgroundImage;
    std::weak_ptr<platform::Spinner> _loadingSpinner;
    std::shared_ptr<platform::View> _mainView;
};

} // namespace kestrin
