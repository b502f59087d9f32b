#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

// Shared by the fuzz targets.
namespace tarnik::fuzz {

inline void require(bool holds) {
    if (!holds) std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace tarnik::fuzz
