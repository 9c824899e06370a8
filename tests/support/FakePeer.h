#pragma once

#include "platform/View.h"

#include <vector>

namespace kestrin::test {

/// A peer of any kind without a toolkit behind it.
template <class Peer>
struct FakePeer : Peer {
    void setFrame(const platform::Rect&) override {}
    void setHidden(bool) override {}
    void setOpacity(double) override {}
    void setBackground(const platform::Color&) override {}
    void setBorder(const platform::Border&) override {}
    void setSubviews(const std::vector<platform::ViewPeer*>&) override {}
};

} // namespace kestrin::test
