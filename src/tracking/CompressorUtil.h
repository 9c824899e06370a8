#pragma once

#include "platform/Matrix.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin {

/// Packs poses, matrices and arrays for the page: little-endian 32-bit fields without header or padding, and
/// the same blocks as base64 text (the operations named ToBitString). Floats pass bit for bit. Thread: any.
///
/// A matrix is sixteen floats column by column; a vector x, y, z; a quaternion x, y, z, w; a pose the vector
/// of column 3 and the quaternion of the upper-left 3x3 block; a timed pose that and one float of seconds.
class CompressorUtil {
  public:
    template <std::size_t Size>
    using Block = std::array<std::uint8_t, Size>;
    using Bytes = std::vector<std::uint8_t>;

    CompressorUtil() = delete;

    static Block<4> compressFloat(float value);
    static Block<64> compressMatrix(const platform::Matrix& matrix);
    static Block<12> compressVector3(const platform::Vector3& vector);
    static Block<16> compressQuaternion(const platform::Quaternion& quaternion);
    static Block<28> compressVector3(const platform::Vector3& position, const platform::Quaternion& rotation);
    static Block<32> compressVector3(const platform::Vector3& position, const platform::Quaternion& rotation,
                                     float timestamp);
    static Block<28> compressMatrixAsPose(const platform::Matrix& matrix);
    static Block<32> compressMatrixAsPoseTs(const platform::Matrix& matrix, float timestamp);

    /// `length` elements; a negative length counts as 0. Shorts are widened to 32 bits, sign kept.
    static Bytes compressVector3Array(const platform::Vector3* vectors, std::int32_t length);
    static Bytes compressIntegerArray(const std::int32_t* values, std::int32_t length);
    static Bytes compressShortArray(const std::int16_t* values, std::int32_t length);

    static std::string compressFloatToBitString(float value);
    static std::string compressMatrixToBitString(const platform::Matrix& matrix);
    static std::string compressVector3ToBitString(const platform::Vector3& vector);
    static std::string compressQuaternionToBitString(const platform::Quaternion& quaternion);
    static std::string compressVector3ToBitString(const platform::Vector3& position,
                                                  const platform::Quaternion& rotation);
    static std::string compressMatrixAsPoseToBitString(const platform::Matrix& matrix);
    static std::string compressMatrixAsPoseTsToBitString(const platform::Matrix& matrix, float timestamp);
    static std::string compressVector3ArrayToBitString(const platform::Vector3* vectors, std::int32_t length);
    static std::string compressIntegerArrayToBitString(const std::int32_t* values, std::int32_t length);
    static std::string compressShortArrayToBitString(const std::int16_t* values, std::int32_t length);

    /// The sixteen numbers of the matrix block, and back.
    static std::vector<float> compressMatrixToArray(const platform::Matrix& matrix);
    static platform::Matrix decompressMatrixFromArray(std::span<const float> numbers);
    /// What follows the first 64 bytes is ignored; fewer, or a text that is no base64, give the zero matrix.
    static platform::Matrix decompressMatrix(std::span<const std::uint8_t> block);
    static platform::Matrix decompressMatrixFromBitString(std::string_view text);

    /// To the log: one line, a column of the matrix on each of its rows.
    static void printMatrix(const platform::Matrix& matrix);
    /// To the log: each byte of the matrix block, lowest bit first.
    static void printMatrixBit(const platform::Matrix& matrix);
};

} // namespace kestrin
