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
    /// A line below the spinner; empty takes it away.
    void setMessage(const std::string& message);
    /// Progress is accepted and not drawn.
    void setProgress(float) {}
    void reset() { setProgress(0.0F); }

  private:
    void customInit();

    std::weak_ptr<platform::ImageView> _backgroundImage;
    std::weak_ptr<platform::Spinner> _loadingSpinner;
    std::weak_ptr<platform::Label> _message;
    std::shared_ptr<platform::View> _mainView;
};

} // namespace kestrin
