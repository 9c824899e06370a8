#pragma once

#include <cstddef>

namespace kestrin::session {

// What a recording may hold at most, so that no file takes the memory there is.
constexpr std::size_t kMostText = 1'000'000'000; ///< bytes of session.jsonl
constexpr std::size_t kMostLine = 4'000'000;     ///< bytes of one of its lines
constexpr std::size_t kMostAnchors = 1000;       ///< at a time
constexpr std::size_t kMostVertices = 32768;     ///< of a plane: as many as an index can name
constexpr std::size_t kMostTriangles = 65536;    ///< of a plane
constexpr std::size_t kMostImuSamples = 10'000;  ///< of a frame
constexpr int kLeastSide = 16, kMostSide = 8192; ///< of the pictures, pixels
constexpr double kMostTime = 1e9;                ///< seconds
constexpr int kRecordingVersion = 1;

} // namespace kestrin::session
