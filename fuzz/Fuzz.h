#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

/// Ends the program, which keeps the input, unless the condition holds.
inline void require(bool condition)
{
    if (!condition)
        abort();
}

inline std::string textOf(const uint8_t* data, size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}
