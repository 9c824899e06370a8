#include "tracking/CompressorUtil.h"

#include "services/util/Base64.h"
#include "services/util/Format.h"
#include "tracking/Geometry.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace kestrin {

using namespace platform;

namespace {

constexpr std::size_t kMatrixNumbers = 16;
constexpr std::size_t kMatrixBytes = 4 * kMatrixNumbers;

void putBits(std::uint32_t bits, std::uint8_t* out) {
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(out, &bits, sizeof bits);
    } else {
        for (unsigned byte = 0; byte < 4; ++byte)
            out[byte] = std::uint8_t(bits >> 8 * byte);
    }
}

void put(float value, std::uint8_t* out) { putBits(std::bit_cast<std::uint32_t>(value), out); }
void put(std::int32_t value, std::uint8_t* out) { putBits(std::uint32_t(value), out); }

float getFloat(const std::uint8_t* in) {
    std::uint32_t bits = 0;
    for (unsigned byte = 0; byte < 4; ++byte)
        bits |= std::uint32_t(in[byte]) << 8 * byte;
    return std::bit_cast<float>(bits);
}

template <class... Values>
CompressorUtil::Block<4 * sizeof...(Values)> pack(Values... values) {
    CompressorUtil::Block<4 * sizeof...(Values)> block;
    std::uint8_t* out = block.data();
    ((put(values, out), out += 4), ...);
    return block;
}

/// Each element as a 32-bit field.
template <class Number>
CompressorUtil::Bytes packWhole(const Number* values, std::int32_t length) {
    const auto count = std::size_t(std::max(length, 0));
    CompressorUtil::Bytes bytes(4 * count);
    for (std::size_t i = 0; i < count; ++i)
        put(std::int32_t(values[i]), bytes.data() + 4 * i);
    return bytes;
}

Vector3 positionOf(const Matrix& m) { return {m[3].x, m[3].y, m[3].z}; }

} // namespace

CompressorUtil::Block<4> CompressorUtil::compressFloat(float value) { return pack(value); }

CompressorUtil::Block<64> CompressorUtil::compressMatrix(const Matrix& m) {
    return pack(m[0].x, m[0].y, m[0].z, m[0].w, m[1].x, m[1].y, m[1].z, m[1].w, //
                m[2].x, m[2].y, m[2].z, m[2].w, m[3].x, m[3].y, m[3].z, m[3].w);
}

CompressorUtil::Block<12> CompressorUtil::compressVector3(const Vector3& v) { return pack(v.x, v.y, v.z); }

CompressorUtil::Block<16> CompressorUtil::compressQuaternion(const Quaternion& q) {
    return pack(q.x, q.y, q.z, q.w);
}

CompressorUtil::Block<28> CompressorUtil::compressVector3(const Vector3& p, const Quaternion& q) {
    return pack(p.x, p.y, p.z, q.x, q.y, q.z, q.w);
}

CompressorUtil::Block<32> CompressorUtil::compressVector3(const Vector3& p, const Quaternion& q,
                                                          float timestamp) {
    return pack(p.x, p.y, p.z, q.x, q.y, q.z, q.w, timestamp);
}

CompressorUtil::Block<28> CompressorUtil::compressMatrixAsPose(const Matrix& matrix) {
    return compressVector3(positionOf(matrix), simd_quaternion(matrix));
}

CompressorUtil::Block<32> CompressorUtil::compressMatrixAsPoseTs(const Matrix& matrix, float timestamp) {
    return compressVector3(positionOf(matrix), simd_quaternion(matrix), timestamp);
}

CompressorUtil::Bytes CompressorUtil::compressVector3Array(const Vector3* vectors, std::int32_t length) {
    const auto count = std::size_t(std::max(length, 0));
    Bytes bytes(12 * count);
    for (std::size_t i = 0; i < count; ++i)
        std::ranges::copy(compressVector3(vectors[i]), bytes.data() + 12 * i);
    return bytes;
}

CompressorUtil::Bytes CompressorUtil::compressIntegerArray(const std::int32_t* values, std::int32_t length) {
    return packWhole(values, length);
}

CompressorUtil::Bytes CompressorUtil::compressShortArray(const std::int16_t* values, std::int32_t length) {
    return packWhole(values, length);
}

std::string CompressorUtil::compressFloatToBitString(float value) {
    return base64Encode(compressFloat(value));
}

std::string CompressorUtil::compressMatrixToBitString(const Matrix& matrix) {
    return base64Encode(compressMatrix(matrix));
}

std::string CompressorUtil::compressVector3ToBitString(const Vector3& vector) {
    return base64Encode(compressVector3(vector));
}

std::string CompressorUtil::compressQuaternionToBitString(const Quaternion& quaternion) {
    return base64Encode(compressQuaternion(quaternion));
}

std::string CompressorUtil::compressVector3ToBitString(const Vector3& position, const Quaternion& rotation) {
    return base64Encode(compressVector3(position, rotation));
}

std::string CompressorUtil::compressMatrixAsPoseToBitString(const Matrix& matrix) {
    return base64Encode(compressMatrixAsPose(matrix));
}

std::string CompressorUtil::compressMatrixAsPoseTsToBitString(const Matrix& matrix, float timestamp) {
    return base64Encode(compressMatrixAsPoseTs(matrix, timestamp));
}

std::string CompressorUtil::compressVector3ArrayToBitString(const Vector3* vectors, std::int32_t length) {
    return base64Encode(compressVector3Array(vectors, length));
}

std::string CompressorUtil::compressIntegerArrayToBitString(const std::int32_t* values, std::int32_t length) {
    return base64Encode(compressIntegerArray(values, length));
}

std::string CompressorUtil::compressShortArrayToBitString(const std::int16_t* values, std::int32_t length) {
    return base64Encode(compressShortArray(values, length));
}

std::vector<float> CompressorUtil::compressMatrixToArray(const Matrix& matrix) {
    std::vector<float> numbers;
    numbers.reserve(kMatrixNumbers);
    for (const Vector4& column : matrix.columns)
        numbers.insert(numbers.end(), {column.x, column.y, column.z, column.w});
    return numbers;
}

Matrix CompressorUtil::decompressMatrixFromArray(std::span<const float> n) {
    if (n.size() < kMatrixNumbers)
        return {};
    return {{{{n[0], n[1], n[2], n[3]},
              {n[4], n[5], n[6], n[7]}, //
              {n[8], n[9], n[10], n[11]},
              {n[12], n[13], n[14], n[15]}}}};
}

Matrix CompressorUtil::decompressMatrix(std::span<const std::uint8_t> block) {
    if (block.size() < kMatrixBytes)
        return {};
    std::array<float, kMatrixNumbers> numbers;
    for (std::size_t i = 0; i < kMatrixNumbers; ++i)
        numbers[i] = getFloat(block.data() + 4 * i);
    return decompressMatrixFromArray(numbers);
}

Matrix CompressorUtil::decompressMatrixFromBitString(std::string_view text) {
    const auto bytes = base64Decode(text).value_or("");
    return decompressMatrix({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

void CompressorUtil::printMatrix(const Matrix& m) {
    log("Matrix = [\n %.1f %.1f %.1f %.1f \n %.1f %.1f %.1f %.1f \n %.1f %.1f %.1f %.1f \n "
        "%.1f %.1f %.1f %.1f \n]",
        m[0].x, m[0].y, m[0].z, m[0].w, m[1].x, m[1].y, m[1].z, m[1].w, //
        m[2].x, m[2].y, m[2].z, m[2].w, m[3].x, m[3].y, m[3].z, m[3].w);
}

void CompressorUtil::printMatrixBit(const Matrix& matrix) {
    const auto block = compressMatrix(matrix);
    for (std::size_t i = 0; i < block.size(); ++i) {
        std::array<char, 8> bits;
        for (unsigned bit = 0; bit < bits.size(); ++bit)
            bits[bit] = block[i] >> bit & 1 ? '1' : '0';
        log("[%i] = (%@)", i, std::string_view(bits.data(), bits.size()));
    }
}

} // namespace kestrin
