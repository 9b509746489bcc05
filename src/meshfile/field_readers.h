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

// The inverse, for the files the library writes: a value's bytes in file order.
inline void storeU32(std::uint8_t* out, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        out[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

inline void storeF32(std::uint8_t* out, float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    storeU32(out, bits);
}

} // namespace neq::meshfile
