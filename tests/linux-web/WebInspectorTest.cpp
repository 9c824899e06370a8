#include "WebTest.h"

#include "linux/toolkit/WidgetPeer.h"
#include "linux/web/Inspector.h"

#include <sys/socket.h>

namespace kestrin::test {
namespace {

using WebInspector = WebTest;

/// Of this process, where WebKit's remote inspector would have one.
int listeningSockets() {
    int count = 0;
    for (int file = 0; file < 1024; ++file) {
        int listens = 0;
        socklen_t size = sizeof listens;
        count += getsockopt(file, SOL_SOCKET, SO_ACCEPTCONN, &listens, &size) == 0 && listens != 0;
    }
    return count;
}

TEST_F(WebInspector, OpensForPagesInDebugModeAlone) {
    const auto toggle = [&] { return gtk::toggleInspector(GTK_WIDGET(window)); };
    const int before = listeningSockets();
    show();
    loadBody();
    EXPECT_FALSE(toggle()) << "nobody has asked for it";
    view->setInspectable(true);
    EXPECT_TRUE(toggle()) << "opens";
    EXPECT_EQ(listeningSockets(), before);
    EXPECT_TRUE(toggle()) << "closes";
    EXPECT_TRUE(toggle()) << "opens again";
    view->setInspectable(false);
    EXPECT_FALSE(toggle());
    loadBody();

    // A product's platform does not allow it.
    gtk::WebKitToolkit shipped(system->kept);
    const auto other = platform::makeView<platform::View>();
    const auto peer = shipped.makeWebPeer(*other, {});
    peer->setInspectable(true);
    EXPECT_FALSE(gtk::toggleInspector(dynamic_cast<gtk::HasWidget&>(*peer).widget()));
}

} // namespace
} // namespace kestrin::test
