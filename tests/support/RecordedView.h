#pragma once

#include "platform/View.h"

#include <vector>

namespace kestrin::test {

/// What a toolkit's side of a view was told last.
struct RecordedView {
    virtual ~RecordedView() = default;

    platform::Rect frame;
    bool hidden = false;
    double opacity = 1;
    platform::Color background;
    platform::Border border;
    std::vector<platform::ViewPeer*> subviews;
};

/// A peer of any kind that keeps what it is told.
template <class Peer>
class RecordingPeer : public Peer, public RecordedView {
  public:
    void setFrame(const platform::Rect& value) override { frame = value; }
    void setHidden(bool value) override { hidden = value; }
    void setOpacity(double value) override { opacity = value; }
    void setBackground(const platform::Color& value) override { background = value; }
    void setBorder(const platform::Border& value) override { border = value; }
    void setSubviews(const std::vector<platform::ViewPeer*>& value) override { subviews = value; }
};

/// What the toolkit was told of `view`.
inline RecordedView& recorded(const platform::View& view) { return dynamic_cast<RecordedView&>(view.peer()); }

} // namespace kestrin::test
