#pragma once

#include <cstdint>
#include <string>

// Binary data in the making, little endian.

inline const std::string nul(1, '\0');

/// The lower 16 bits of \p number.
inline std::string u16(std::int64_t number)
{
    return {static_cast<char>(number), static_cast<char>(number >> 8)};
}

/// The lower 32 bits of \p number.
inline std::string u32(std::int64_t number)
{
    const auto bits = static_cast<std::uint32_t>(number);
    return u16(bits) + u16(bits >> 16);
}
