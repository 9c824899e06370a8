#include "session/recording/LineText.h"

#include "session/TrackingReasonName.h"
#include "session/recording/RecordingLimits.h"

#include <boost/json.hpp>

#include <array>
#include <charconv>
#include <concepts>
#include <string_view>

namespace kestrin::session {

using platform::ArAnchor;
using platform::ArImageAnchor;
using platform::ArPlaneAnchor;

namespace {

/// One JSON object, member by member.
class Line {
  public:
    template <typename Number>
    requires std::integral<Number> || std::floating_point<Number> Line& value(Number number) {
        std::array<char, 32> digits{};
        m_text.append(digits.begin(), std::to_chars(digits.begin(), digits.end(), number).ptr);
        return *this;
    }
    Line& value(bool flag) { return raw(flag ? "true" : "false"); }
    Line& value(std::string_view text) { return raw(boost::json::serialize(boost::json::string(text))); }
    Line& value(const platform::Vector3& v) { return numbers({v.x, v.y, v.z}); }
    Line& value(const platform::Matrix& m) {
        open('[');
        for (const platform::Vector4& column : m.columns)
            for (const float number : {column.x, column.y, column.z, column.w})
                item().value(number);
        return close(']');
    }
    Line& value(const platform::Intrinsics& k) { return numbers({k.fx, k.fy, k.cx, k.cy}); }
    template <typename Number>
    Line& numbers(std::initializer_list<Number> all) {
        open('[');
        for (const Number number : all)
            item().value(number);
        return close(']');
    }

    Line& key(std::string_view name) {
        item();
        return raw("\"").raw(name).raw("\":");
    }
    template <typename Value>
    Line& member(std::string_view name, const Value& content) {
        return key(name).value(content);
    }
    template <typename Range, typename Write>
    Line& list(std::string_view name, const Range& range, Write write) {
        key(name).open('[');
        for (const auto& element : range)
            write(item(), element);
        return close(']');
    }

    Line& item() {
        if (const char last = m_text.empty() ? '{' : m_text.back(); last != '{' && last != '[')
            m_text += ',';
        return *this;
    }
    Line& open(char bracket) { return m_text += bracket, *this; }
    Line& close(char bracket) { return m_text += bracket, *this; }
    std::string take() { return std::move(m_text); }

  private:
    Line& raw(std::string_view text) { return m_text += text, *this; }

    std::string m_text;
};

void writePlane(Line& line, const ArPlaneAnchor& plane) {
    line.member("center", plane.center).member("extent", plane.extent).member("vertical", plane.isVertical);
    if (!plane.geometry)
        return;
    line.key("vertices").open('[');
    for (const platform::Vector3& vertex : plane.geometry->vertices)
        line.item().value(vertex.x).item().value(vertex.y).item().value(vertex.z);
    line.close(']');
    line.list("triangles", plane.geometry->triangleIndices,
              [](Line& out, std::int16_t index) { out.value(index); });
}

void writeAnchor(Line& line, const ArAnchor& anchor) {
    const auto* plane = dynamic_cast<const ArPlaneAnchor*>(&anchor);
    const auto* image = dynamic_cast<const ArImageAnchor*>(&anchor);
    const std::string_view type = plane ? "plane" : image ? "image" : "anchor";
    line.open('{').member("type", type).member("id", std::string_view(anchor.identifier));
    line.member("pose", anchor.transform);
    if (plane)
        writePlane(line, *plane);
    if (image && image->referenceImage) {
        line.member("name", std::string_view(image->referenceImage->name));
        line.member("width", image->referenceImage->physicalWidth);
    }
    if (image)
        line.member("tracked", image->isTracked);
    line.close('}');
}

void writeAnchors(Line& line, std::string_view name, const platform::ArAnchors& anchors) {
    if (!anchors.empty())
        line.list(name, anchors, [](Line& out, const auto& anchor) { writeAnchor(out, *anchor); });
}

void writeImu(Line& line, const ImuSample& sample) {
    const auto& [time, rotation, acceleration] = sample;
    line.numbers(
        {time, rotation[0], rotation[1], rotation[2], acceleration[0], acceleration[1], acceleration[2]});
}

} // namespace

std::string headerLine(const RecordingInfo& info) {
    const CameraModel& camera = info.camera;
    Line line;
    line.open('{').member("kestrin-recording", kRecordingVersion);
    line.member("width", camera.width).member("height", camera.height);
    line.member("mounting", std::string_view(camera.mounting == Mounting::turned ? "turned" : "upright"));
    line.member("intrinsics", camera.intrinsics).member("rate", info.rate);
    line.member("origin", std::string_view(info.origin)).close('}');
    return line.take();
}

std::string frameLine(const RecordedFrame& recorded) {
    const SourcedFrame& frame = recorded.frame;
    Line line;
    line.open('{').member("time", frame.time).member("pose", frame.sensorPose);
    line.member("intrinsics", frame.intrinsics).member("tracking", nameOf(frame.reason));
    if (frame.ambientIntensity)
        line.member("light", *frame.ambientIntensity);
    if (!frame.anchors.removed.empty())
        line.list("removed", frame.anchors.removed,
                  [](Line& out, const auto& anchor) { out.value(std::string_view(anchor->identifier)); });
    writeAnchors(line, "added", frame.anchors.added);
    writeAnchors(line, "updated", frame.anchors.updated);
    if (!recorded.imu.empty())
        line.list("imu", recorded.imu, [](Line& out, const ImuSample& sample) { writeImu(out, sample); });
    return line.close('}').take();
}

std::string endLine(std::size_t frames) {
    Line line;
    return line.open('{').member("frames", frames).close('}').take();
}

} // namespace kestrin::session
