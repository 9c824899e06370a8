#include "services/KestrinPermission.h"

#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/KestrinUtil.h"
#include "services/util/MainThread.h"

#include <utility>

namespace kestrin {

using platform::Authorization;

namespace {

using Callback = KestrinPermission::Callback;

/// `request` puts the question to the person.
template <class Request>
void ask(Authorization status, Request request, Callback granted, Callback denied) {
    if (status == Authorization::notDetermined)
        request([granted = std::move(granted), denied = std::move(denied)](bool yes) {
            onMain(yes ? granted : denied);
        });
    else if (status == Authorization::authorized)
        granted();
    else
        denied();
}

void sayRefused(const char* what, const char* setting) {
    KestrinUtil::showAlert(
        format("The app doesn\u2019t have access to your %@ and it needs this to function. You can grant "
               "access in Privacy Settings.\n\n1. Close this app\n\n2. Open settings\n\n3. Scroll down and "
               "select this app in the list\n\n4. Select Privacy\n\n5. Turn on %@ Access\n\n6. Restart this "
               "app",
               what, setting),
        "Oops!", "OK");
}

} // namespace

void KestrinPermission::askCameraAccess(Callback granted, Callback denied) {
    platform::Permissions& permissions = platform::platform().permissions();
    ask(
        permissions.camera(), [&](auto answer) { permissions.requestCamera(std::move(answer)); },
        std::move(granted), std::move(denied));
}

void KestrinPermission::askPhotoAccess(Callback granted, Callback denied) {
    platform::Permissions& permissions = platform::platform().permissions();
    ask(
        permissions.photos(), [&](auto answer) { permissions.requestPhotos(std::move(answer)); },
        std::move(granted), std::move(denied));
}

void KestrinPermission::askAccess(Callback granted, Callback denied) {
    const auto askNext = [granted = std::move(granted), denied] {
        platform::platform().dispatch().mainAsync([=] { askPhotoAccess(granted, denied); });
    };
    askCameraAccess(askNext, denied);
}

void KestrinPermission::denyPhotoMessage() { sayRefused("gallery", "Gallery"); }

void KestrinPermission::denyCameraMessage() { sayRefused("camera", "Camera"); }

} // namespace kestrin
