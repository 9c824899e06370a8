#include "session/recording/LineReader.h"

#include "session/Field.h"
#include "session/TrackingReasonName.h"
#include "session/recording/AnchorReader.h"
#include "session/recording/ExactJson.h"
#include "session/recording/RecordingLimits.h"

#include <boost/json.hpp>

#include <cmath>
#include <limits>
#include <typeinfo>

namespace kestrin::session {

namespace {

constexpr double kMostNumber = std::numeric_limits<double>::max();

boost::json::value parseLine(std::string_view line) {
    if (line.size() > kMostLine)
        throw FieldError("longer than " + std::to_string(kMostLine) + " bytes");
    auto document = parseExactly(line);
    if (!document)
        throw FieldError("not JSON");
    return std::move(*document);
}

double readWhole(const Field& field, double least, double most) {
    const double number = field.number(least, most);
    if (number != std::floor(number))
        field.fail("expected a whole number");
    return number;
}

Mounting readMounting(const Field& field) {
    const std::string name = field.text();
    if (name != "turned" && name != "upright")
        field.fail("expected turned or upright");
    return name == "turned" ? Mounting::turned : Mounting::upright;
}

platform::TrackingReason readTracking(const Field& field) {
    const auto reason = reasonNamed(field.text());
    if (!reason)
        field.fail("expected normal, initializing, excessiveMotion, insufficientFeatures or relocalizing");
    return *reason;
}

std::vector<Field> itemsOf(const Field& field, std::string_view key, std::size_t most) {
    const auto list = field.find(key);
    return list ? list->items(most) : std::vector<Field>{};
}

} // namespace

RecordingInfo LineReader::readHeader(std::string_view line) {
    const auto document = parseLine(line);
    const Field field(document);
    const Field version = field["kestrin-recording"];
    if (const double number = readWhole(version, 1, 1e6); number > kRecordingVersion)
        version.fail("version " + std::to_string(int(number)) + " is newer than " +
                     std::to_string(kRecordingVersion) + ", which this program reads");
    field.allowKeys({"kestrin-recording", "width", "height", "mounting", "intrinsics", "rate", "origin"});
    RecordingInfo info;
    info.camera = {readIntrinsics(field["intrinsics"]), int(readWhole(field["width"], kLeastSide, kMostSide)),
                   int(readWhole(field["height"], kLeastSide, kMostSide)), readMounting(field["mounting"])};
    info.rate = field["rate"].number(0.1, 1000);
    if (const auto origin = field.find("origin"))
        info.origin = origin->anyText();
    return info;
}

std::optional<RecordedFrame> LineReader::readFrame(std::string_view line) {
    if (m_isFinished)
        throw FieldError("comes after the end");
    const auto document = parseLine(line);
    const Field field(document);
    if (field.find("frames")) {
        readEnd(field);
        return {};
    }
    field.allowKeys(
        {"time", "pose", "intrinsics", "tracking", "light", "removed", "added", "updated", "imu"});
    RecordedFrame recorded;
    SourcedFrame& frame = recorded.frame;
    frame.time = field["time"].number(0, kMostTime);
    if (!(frame.time > m_time))
        field["time"].fail("expected a time after that of the frame before");
    m_time = frame.time;
    frame.sensorPose = readPose(field["pose"]);
    frame.intrinsics = readIntrinsics(field["intrinsics"]);
    frame.reason = readTracking(field["tracking"]);
    if (const auto light = field.find("light"))
        frame.ambientIntensity = light->number(0, 1e9);
    frame.anchors = readChanges(field);
    readImu(field, recorded.imu);
    ++m_frames;
    return recorded;
}

void LineReader::readEnd(const Field& field) {
    field.allowKeys({"frames"});
    if (field["frames"].number(0, kMostNumber) != double(m_frames))
        field["frames"].fail("expected " + std::to_string(m_frames) + ", as many as there are");
    m_isFinished = true;
}

/// Takes the anchor away that an identifier names.
LineReader::AnchorRef LineReader::take(const Field& identifier) {
    auto node = m_anchors.extract(identifier.text());
    if (node.empty())
        identifier.fail("was never added");
    return std::move(node.mapped());
}

AnchorChanges LineReader::readChanges(const Field& field) {
    AnchorChanges changes;
    for (const Field& item : itemsOf(field, "removed", kMostAnchors))
        changes.removed.push_back(take(item));
    for (const Field& item : itemsOf(field, "added", kMostAnchors)) {
        changes.added.push_back(readAnchor(item));
        if (!m_anchors.emplace(changes.added.back()->identifier, changes.added.back()).second)
            item["id"].fail("is there already");
        if (m_anchors.size() > kMostAnchors)
            item.fail("expected at most " + std::to_string(kMostAnchors) + " anchors at a time");
    }
    for (const Field& item : itemsOf(field, "updated", kMostAnchors)) {
        const AnchorRef before = take(item["id"]), now = readAnchor(item);
        const auto &old = *before, &young = *now;
        if (typeid(old) != typeid(young))
            item["type"].fail("expected that of the anchor when it was added");
        m_anchors.emplace(now->identifier, now);
        changes.updated.push_back(now);
    }
    return changes;
}

void LineReader::readImu(const Field& field, std::vector<ImuSample>& samples) {
    for (const Field& item : itemsOf(field, "imu", kMostImuSamples)) {
        const auto n = item.numbers(7, -kMostNumber, kMostNumber, "expected 7 finite numbers");
        if (!(std::abs(n[0]) <= kMostTime && n[0] >= m_imuTime))
            item.fail("expected a time not before that of the sample before");
        m_imuTime = n[0];
        samples.push_back({n[0], {n[1], n[2], n[3]}, {n[4], n[5], n[6]}});
    }
}

} // namespace kestrin::session
