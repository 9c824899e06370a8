#include "services/ConnectionChecker.h"

#include "core/config/Deployment.h"
#include "platform/Platform.h"
#include "services/Reachability.h"
#include "services/util/KestrinUtil.h"
#include "services/util/Singleton.h"

#include <utility>

namespace kestrin {

namespace {

struct Internet {
    std::shared_ptr<Reachability> path = Reachability::reachabilityForInternetConnection();
};

struct PublicHost {
    std::shared_ptr<Reachability> path = Reachability::reachabilityWithHostName(Deployment::kPublicHost);
};

bool isReachable(const std::shared_ptr<Reachability>& path) {
    return path && path->currentReachabilityStatus() != Reachability::notReachable;
}

Reachability::Block postsToMain(ConnectionChecker::Callback callback) {
    return [callback = std::move(callback)](Reachability&) {
        platform::platform().dispatch().mainAsync(callback);
    };
}

} // namespace

bool ConnectionChecker::checkConnection() {
    return isReachable(singleton<Internet>()->path) && isReachable(singleton<PublicHost>()->path);
}

void ConnectionChecker::checkConnectionWithCallback(Callback success, Callback failure) {
    const auto path = singleton<PublicHost>()->path;
    if (path) {
        path->setReachableBlock(postsToMain(std::move(success)));
        path->setUnreachableBlock(postsToMain(failure));
    }
    if (!path || !path->startNotifier())
        platform::platform().dispatch().mainAsync(std::move(failure));
}

void ConnectionChecker::showConnectionMessage() {
    KestrinUtil::showAlert("It appears you have no Internet Connection available. Please connect to the "
                           "internet and relaunch the app.",
                           "Error", "OK");
}

} // namespace kestrin
