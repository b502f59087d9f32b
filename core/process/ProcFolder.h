#pragma once

#include <array>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "core/foundation/UniqueFd.h"
#include "core/process/ProcessEntry.h"
#include "core/process/ProcessStat.h"

namespace tarnik {

// Linux's /proc, opened once for queries about many processes. Allocates only the results.
//
// Not thread-safe, because all operations share the buffers.
class ProcFolder {
public:
    enum class Missing {
        process,  // it has ended, or is hidden from this user
        answer,   // it may exist, but could not be read
    };
    static constexpr std::size_t longestPath = 4096;

    ProcFolder();

    // Returns all visible processes, or std::nullopt if one of them may exist but can't be read.
    std::optional<std::vector<ProcessEntry>> entries();
    std::expected<ProcessEntry, Missing> entry(pid_t pid);
    std::expected<ProcessStat, Missing> stat(pid_t pid);
    // Returns the children that any thread of the process started. Returns std::nullopt if a thread ends
    // meanwhile, and on kernels without such lists.
    std::optional<std::vector<pid_t>> children(pid_t parent);

    // Returns the path of the program, without the suffix that Linux appends when the file is removed.
    std::optional<std::string> program(pid_t pid);

    std::uint64_t ticksPerSecond() const { return ticksPerSecond_; }

private:
    // Returns "PID/file", valid until the next call.
    const char* nameOf(pid_t pid, std::string_view file);
    bool leadsTo(const char* link, const std::string& path) const;

    UniqueFd folder_;
    std::uint64_t ticksPerSecond_;
    std::array<char, 32> name_{};
    std::array<char, longestPath> text_{};
};

}  // namespace tarnik
