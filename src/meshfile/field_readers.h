#pragma once

// Little-endian field assembly from raw file bytes, lowest-addressed byte first.
// Each byte is taken as unsigned before shifting so high bytes never spill sign bits.

#include <cstdint>
#include <cstring>

namespace neq::meshfile {

constexpr std::uint32_t assembleU32(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2,
                                    std::uint8_t b3) {
    return std::uint32_t{b0} | std::uint32_t{b1} << 8 | std::uint32_t{b2} << 16 |
           std::uint32_t{b3} << 24;
}

constexpr std::int32_t assembleI32(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2,
                                   std::uint8_t b3) {
    return static_cast<std::int32_t>(assembleU32(b0, b1, b2, b3));
}

constexpr std::int16_t assembleI16(std::uint8_t b0, std::uint8_t b1) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(b0 | b1 << 8));
}

inline float assembleF32(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2, std::uint8_t b3) {
    const std::uint32_t bits = assembleU32(b0, b1, b2, b3);
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace neq::meshfile
