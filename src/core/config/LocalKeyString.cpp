#include "core/config/LocalKeyString.h"

#include "core/config/Deployment.h"
#include "services/util/KestrinUtil.h"

#include <boost/json.hpp>

namespace kestrin {

std::string localKeyString() {
    const boost::json::array commands{
        {{"eventName", "sdkloadapplication"},
         {"data", {{"appID", Deployment::kLocalApplicationId}, {"theme", "card3/www"}}}}};
    const boost::json::object key{
        {"baseUrl", std::string("https://") + Deployment::kApplicationHost + "/themes/sdkLive/local.html"},
        {"baseCommand", KestrinUtil::arrToJSON64(&commands)}};
    return KestrinUtil::dictToJSON64(&key);
}

} // namespace kestrin
