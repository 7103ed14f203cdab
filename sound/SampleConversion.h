// Converts PCM bytes to samples.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "samples are taken from the bytes as they are");

// Each encoding has a byteCount and a decode(), which converts byteCount little-endian bytes to a
// sample. Full scale is -1 to +1.

/// 8 bits, unsigned, 128 being zero: divided by 128.
struct Unsigned8Bit {
    static constexpr std::size_t byteCount = 1;

    static double decode(const char* bytes) {
        return (static_cast<unsigned char>(*bytes) - 128) * 0.0078125;
    }
};

/// 16 bits, two's complement: divided by 32768.
struct Signed16Bit {
    static constexpr std::size_t byteCount = 2;

    static double decode(const char* bytes) {
        std::int16_t value = 0;
        std::memcpy(&value, bytes, sizeof(value));
        return value * 3.0517578125e-5;
    }
};

/// 24 bits, two's complement: divided by 2^23, except for the code 0x800000, which is +1.0 and
/// not -1.0, deliberately.
struct Signed24Bit {
    static constexpr std::size_t byteCount = 3;

    static double decode(const char* bytes) {
        std::uint16_t lower = 0;
        std::memcpy(&lower, bytes, sizeof(lower));
        const int code = static_cast<signed char>(bytes[2]) * 0x10000 + lower;
        return (code == -0x800000 ? -code : code) * 1.1920928955078125e-7;
    }
};
