#include "services/util/DecodeImage.h"
#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"
#include "services/util/OverrideNSURLSessionDelegate.h"
#include "services/util/UploadTrust.h"

#include <boost/json.hpp>

#include <utility>

namespace kestrin {

namespace json = boost::json;

namespace {

platform::HttpRequest getRequest(const std::string& url) {
    platform::HttpRequest request;
    request.url = url;
    return request;
}

std::optional<std::string> fetch(const std::string& url) {
    const auto delegate = OverrideNSURLSessionDelegate::getInstance();
    auto response = platform::platform().http().fetch(getRequest(url), delegate.get());
    return response ? std::optional(std::move(response->body)) : std::nullopt;
}

std::optional<json::value> parseAnswer(const std::optional<platform::HttpResponse>& response) {
    auto answer = response ? parseJson(response->body) : std::nullopt;
    const bool isContainer = answer && answer->is_structured();
    return isContainer ? std::move(answer) : std::nullopt;
}

void send(const platform::HttpRequest& request, std::shared_ptr<platform::AuthenticationDelegate> delegate,
          KestrinUtil::JsonCallback callback) {
    auto* const asked = delegate.get();
    platform::platform().http().send(request, asked,
                                     [delegate = std::move(delegate), callback = std::move(callback)](
                                         const auto& response) { callback(parseAnswer(response)); });
}

} // namespace

void KestrinUtil::sendAsyncRequest(const std::string& url, JsonCallback callback) {
    send(getRequest(url), OverrideNSURLSessionDelegate::getInstance(), std::move(callback));
}

void KestrinUtil::sendAsyncImageRequest(const std::string& url, const platform::Image& image,
                                        JsonCallback callback) {
    sendAsyncImageRequestWithParams(url, image, nullptr, std::move(callback));
}

void KestrinUtil::sendAsyncImageRequestWithParams(const std::string& url, const platform::Image& image,
                                                  const json::object* params, JsonCallback callback) {
    auto body = params ? *params : json::object();
    // A large picture takes longer to encode than main may be held up.
    platform::platform().dispatch().globalAsync(
        [url, image, body = std::move(body), callback = std::move(callback)]() mutable {
            body["file"] = convertImageToBase64JPEG(image);
            auto request = getRequest(url);
            request.method = "POST";
            request.headers["Content-Type"] = "application/json";
            request.body = dictToJSON(&body);
            send(request, std::make_shared<UploadTrust>(url), std::move(callback));
        });
}

std::optional<json::value> KestrinUtil::getJSONFromURL(const std::string& url) {
    const auto body = fetch(url);
    return body ? parseJson(*body) : std::nullopt;
}

platform::Image KestrinUtil::getImageFromURL(const std::string& url) {
    const auto body = fetch(url);
    return body ? decodeImage(*body) : platform::Image();
}

} // namespace kestrin
