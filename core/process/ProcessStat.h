#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <sys/types.h>

namespace tarnik {

// The fields that we use from the line in Linux's /proc/PID/stat. Times are in clock ticks.
struct ProcessStat {
    pid_t parent = 0;
    std::uint64_t userTicks = 0;
    std::uint64_t systemTicks = 0;
    std::uint64_t startTicks = 0;  // since boot

    // Returns std::nullopt if a field that we use is missing or isn't a number. The second field of the line
    // is the process's name in parentheses. The process chooses the name, so it may contain any character.
    static std::optional<ProcessStat> parse(std::string_view line);

    bool operator==(const ProcessStat&) const = default;
};

}  // namespace tarnik
