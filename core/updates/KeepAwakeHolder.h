#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/process/ProcessEntry.h"

// Keep-awake holders: processes that the helper node starts to keep the machine awake while the node works.
namespace tarnik::KeepAwakeHolder {

// The default executable of a holder.
inline constexpr std::string_view path = "/usr/bin/caffeinate";

// Identifies a holder across samples. A reused pid has another start time.
struct Seen {
    pid_t pid = 0;
    ProcessTime started;

    bool operator==(const Seen&) const = default;
};

// Returns the holders among the descendants of `under`, the nearest first. Does not return `under` itself.
std::vector<ProcessEntry> holders(pid_t under, const std::vector<ProcessEntry>& in,
                                  std::string_view holderPath = path);

bool held(pid_t under, const std::vector<ProcessEntry>& in, std::string_view holderPath = path);

// Returns the holders, or std::nullopt if the start time of a holder is unknown.
std::optional<std::vector<Seen>> seen(pid_t under, const std::vector<ProcessEntry>& in,
                                      std::string_view holderPath = path);

}  // namespace tarnik::KeepAwakeHolder

template <>
struct std::hash<tarnik::KeepAwakeHolder::Seen> {
    std::size_t operator()(const tarnik::KeepAwakeHolder::Seen& seen) const noexcept;
};
