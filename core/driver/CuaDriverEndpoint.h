#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// Where the running desktop driver listens, as the helper node is told.
struct CuaDriverEndpoint {
    static constexpr std::string_view environmentKey = "OPENCLAW_CUA_DRIVER_ENDPOINT";
    static constexpr std::size_t maxBytes = 4096;
    // Variables of these families in our own environment speak of another driver.
    static constexpr std::array<std::string_view, 2> inheritedFamilyPrefixes{"OPENCLAW_CUA_DRIVER_",
                                                                             "CUA_DRIVER_"};

    std::string socketPath;  // absolute
    std::string binaryPath;  // absolute

    // The value for environmentKey; none when a path isn't absolute or holds a NUL, or the text gets too
    // long.
    std::optional<std::string> environmentValue() const;

    bool operator==(const CuaDriverEndpoint&) const = default;
};

}  // namespace tarnik
