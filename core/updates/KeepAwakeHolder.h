#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/process/ProcessEntry.h"

// The processes by which the helper node holds the machine awake while it works.
namespace tarnik::KeepAwakeHolder {

// What such a process runs. Stand-ins have another.
inline constexpr std::string_view path = "/usr/bin/caffeinate";

// A holder as one sample knows it from the next: a pid used again has another start.
struct Seen {
    pid_t pid = 0;
    ProcessTime started;

    bool operator==(const Seen&) const = default;
};

// The holders among all descendants of `under`, the nearest first; `under` itself is none.
std::vector<ProcessEntry> holders(pid_t under, const std::vector<ProcessEntry>& in,
                                  std::string_view holderPath = path);

bool held(pid_t under, const std::vector<ProcessEntry>& in, std::string_view holderPath = path);

// None when the start of one of them is not known.
std::optional<std::vector<Seen>> seen(pid_t under, const std::vector<ProcessEntry>& in,
                                      std::string_view holderPath = path);

}  // namespace tarnik::KeepAwakeHolder

template <>
struct std::hash<tarnik::KeepAwakeHolder::Seen> {
    std::size_t operator()(const tarnik::KeepAwakeHolder::Seen& seen) const noexcept;
};
