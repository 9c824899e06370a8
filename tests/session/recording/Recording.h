#pragma once

#include "../Listener.h"
#include "session/recording/RecordingReader.h"
#include "session/recording/RecordingWriter.h"
#include "support/TemporaryFolder.h"

#include <cmath>
#include <gtest/gtest.h>

namespace kestrin::session::test {

inline RecordingInfo testInfo(int width = 96, int height = 64) {
    return {{{500.1, 510.0 / 3, 320.5, 239}, width, height, Mounting::upright}, 29.97, "a \"test\"\n"};
}

/// Every value of luma, sharp edges, and another texture in every picture.
inline Nv12Buffer testPicture(int width, int height, unsigned seed) {
    Nv12Buffer picture(width, height);
    for (int i = 0; i < picture.rows() * picture.stride(); ++i) {
        const unsigned x = unsigned(i % picture.stride()), y = unsigned(i / picture.stride());
        picture.bytes()[i] =
            std::uint8_t(x / 8 % 2 == 0 ? x + y + seed : (x * y + seed) * 2654435761U >> 24U);
    }
    return picture;
}

/// A camera that turns and moves along odd numbers.
inline RecordedFrame testFrame(int i) {
    RecordedFrame recorded;
    SourcedFrame& frame = recorded.frame;
    frame.time = i / 29.97 + 0.1;
    const auto c = float(std::cos(0.1 * i)), s = float(std::sin(0.1 * i));
    frame.sensorPose = {
        {{{c, 0, -s, 0}, {0, 1, 0, 0}, {s, 0, c, 0}, {0.1F * float(i), 1 / 3.0F, -1e-9F, 1}}}};
    frame.intrinsics = {500.1 + i / 7.0, 510.0 / 3, 320.5, 239};
    return recorded;
}

inline std::shared_ptr<platform::ArPlaneAnchor> testPlane(const std::string& identifier, bool isVertical) {
    auto anchor = std::make_shared<platform::ArPlaneAnchor>();
    anchor->identifier = identifier;
    anchor->transform = testFrame(3).frame.sensorPose;
    anchor->center = {0.1F, 0, -0.7F};
    anchor->extent = {1.2F, 0, 0.8F};
    auto geometry = std::make_shared<platform::ArPlaneGeometry>();
    geometry->vertices = {{0.1F, 0, 0.3F}, {1e-7F, 0, 3e10F}, {-1 / 3.0F, 0, 2}};
    geometry->triangleIndices = {0, 2, 1, 1, 2, 0};
    anchor->geometry = geometry;
    anchor->isVertical = isVertical;
    return anchor;
}

inline std::shared_ptr<platform::ArImageAnchor> testImage(const std::string& identifier,
                                                          const std::string& name, bool isTracked) {
    auto reference = std::make_shared<platform::ArReferenceImage>();
    reference->name = name;
    reference->physicalWidth = 0.1 + 0.2;
    auto anchor = std::make_shared<platform::ArImageAnchor>();
    anchor->identifier = identifier;
    anchor->transform = testFrame(5).frame.sensorPose;
    anchor->referenceImage = reference;
    anchor->isTracked = isTracked;
    return anchor;
}

inline std::unique_ptr<RecordingWriter> createRecording(const std::filesystem::path& folder,
                                                        const RecordingInfo& info = testInfo()) {
    auto writer = RecordingWriter::create(folder, info);
    if (const auto* error = std::get_if<RecordingError>(&writer)) {
        ADD_FAILURE() << error->text;
        return {};
    }
    return std::move(std::get<0>(writer));
}

inline void record(const std::filesystem::path& folder, const std::vector<RecordedFrame>& frames) {
    const auto writer = createRecording(folder);
    for (std::size_t i = 0; i < frames.size(); ++i)
        if (const auto error = writer->add(frames[i], testPicture(96, 64, unsigned(i))))
            ADD_FAILURE() << error->text;
    EXPECT_FALSE(writer->finish());
}

inline std::unique_ptr<RecordingReader> openRecording(const std::filesystem::path& folder,
                                                      Damage damage = Damage::refused) {
    auto reader = RecordingReader::open(folder, damage);
    if (const auto* error = std::get_if<RecordingError>(&reader)) {
        ADD_FAILURE() << error->text;
        return {};
    }
    return std::move(std::get<0>(reader));
}

} // namespace kestrin::session::test
