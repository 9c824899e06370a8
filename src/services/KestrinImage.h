#pragma once

#include "platform/Image.h"

#include <boost/json/fwd.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrin {

/// A picture, or the lack of one, with what can be done with it. Thread: any, unless said otherwise.
class KestrinImage {
  public:
    /// 36 by 36 points of nothing.
    static std::shared_ptr<KestrinImage> initBlank();
    static std::shared_ptr<KestrinImage> initWithImage(const platform::Image& image);
    /// `data` is kept as long as the picture.
    static std::shared_ptr<KestrinImage> initWithImageData(const platform::Image& image,
                                                           std::vector<std::uint8_t> data);
    /// The picture at an address, most often a `data:` one. Others block. Thread: worker; any for a `data:`
    /// address.
    static std::shared_ptr<KestrinImage> initWithBase64String(const std::optional<std::string>& url);

    const platform::Image& getImage() const { return _img; }
    bool isValid() const { return _img.isValid(); }
    /// Points; 0 without a picture.
    float getWidth() const { return float(_img.size().width); }
    float getHeight() const { return float(_img.size().height); }

    /// The second over the first, each stretched to the larger width and the larger height, at the main
    /// screen's native scale. Null, with a line in the log, when one is null or no picture. Thread: main.
    static std::shared_ptr<KestrinImage> combineWithImage(const std::shared_ptr<KestrinImage>& first,
                                                          const std::shared_ptr<KestrinImage>& second);

    /// Asks for the photo library and saves the picture there. Thread: main.
    void saveIntoCameraRoll() const;
    /// The same when access was granted. How it ends is only logged.
    void saveIntoCameraRollAfterPermission() const;
    /// Shows the picture with the offer to share it. `event` is the page's whole message. Thread: main, as
    /// for the next.
    void share(const boost::json::object& event) const;
    /// Offers to share the message's text and the picture.
    void shareDirect(const boost::json::object& event) const;

  private:
    KestrinImage(const platform::Image& image, std::optional<std::vector<std::uint8_t>> buffer);

    const platform::Image _img;
    const std::optional<std::vector<std::uint8_t>> _buffer;
};

} // namespace kestrin
