#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// The address of the running desktop driver. The helper node receives the address in its environment.
struct CuaDriverEndpoint {
    static constexpr std::string_view environmentKey = "OPENCLAW_CUA_DRIVER_ENDPOINT";
    static constexpr std::size_t maxBytes = 4096;
    // Inherited variables with these prefixes belong to another driver and are dropped.
    static constexpr std::array<std::string_view, 2> inheritedFamilyPrefixes{"OPENCLAW_CUA_DRIVER_",
                                                                             "CUA_DRIVER_"};

    std::string socketPath;  // absolute
    std::string binaryPath;  // absolute

    // Returns the value for environmentKey, or std::nullopt if a path is not absolute or contains a NUL, or
    // if the value exceeds maxBytes.
    std::optional<std::string> environmentValue() const;

    bool operator==(const CuaDriverEndpoint&) const = default;
};

}  // namespace tarnik
