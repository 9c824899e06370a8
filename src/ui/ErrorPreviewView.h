#pragma once

#include "ui/KestrinCustomView.h"

#include <string>

namespace kestrin {

/// A panel with a title and a text, over everything. Thread: any.
class ErrorPreviewView : public KestrinCustomView {
  public:
    /// Thread: main.
    static std::shared_ptr<ErrorPreviewView> initWithFrame(const platform::Rect& frame);

    void setTitle(const std::string& title, const std::string& body);

  private:
    void customInit();

    std::shared_ptr<platform::View> _mainView;
    std::weak_ptr<platform::Label> _title;
    std::weak_ptr<platform::View> _backgroundView;
    std::weak_ptr<platform::Label> _body;
};

} // namespace kestrin
