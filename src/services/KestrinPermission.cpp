#include "services/KestrinPermission.h"

#include "platform/Platform.h"
#include "services/util/KestrinUtil.h"
#include "services/util/MainThread.h"

#include <utility>

namespace kestrin {

void KestrinPermission::askCameraAccess(Callback granted, Callback denied) {
    platform::Permissions& permissions = platform::platform().permissions();
    const platform::Authorization status = permissions.camera();
    if (status == platform::Authorization::notDetermined)
        permissions.requestCamera([granted = std::move(granted), denied = std::move(denied)](bool yes) {
            onMain(yes ? granted : denied);
        });
    else if (status == platform::Authorization::authorized)
        granted();
    else
        denied();
}

void KestrinPermission::denyCameraMessage() {
    KestrinUtil::showAlert(
        "The app doesn\u2019t have access to your camera and it needs this to function. You can grant access "
        "in "
        "Privacy Settings.\n\n1. Close this app\n\n2. Open settings\n\n3. Scroll down and select this app in "
        "the list\n\n4. Select Privacy\n\n5. Turn on Camera Access\n\n6. Restart this app",
        "Oops!", "OK");
}

} // namespace kestrin
