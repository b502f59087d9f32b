#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <sys/types.h>

namespace tarnik {

// What we need of the line in Linux's /proc/PID/stat. Times are in the system's clock ticks.
struct ProcessStat {
    pid_t parent = 0;
    std::uint64_t userTicks = 0;
    std::uint64_t systemTicks = 0;
    std::uint64_t startTicks = 0;  // since the boot

    // The process chooses its name, the second field in parentheses, and may write anything in there.
    static std::optional<ProcessStat> parse(std::string_view line);

    bool operator==(const ProcessStat&) const = default;
};

}  // namespace tarnik
