#include "core/KestrinCVSession.h"

#include "core/KestrinView.h"
#include "services/util/SystemLevel.h"

namespace kestrin {

std::shared_ptr<KestrinView> KestrinCVSession::initKestrinView() { return KestrinView::init(); }

bool KestrinCVSession::isARSupported() { return KestrinView::isSupported(); }

bool KestrinCVSession::isMarkerARSupported() { return systemIsAtLeast(11.3); }

bool KestrinCVSession::isSimulator() { return false; }

} // namespace kestrin
