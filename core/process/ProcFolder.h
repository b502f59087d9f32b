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

// Linux's /proc, opened once for queries about many processes.
//
// Not thread-safe, because all queries share the buffers.
class ProcFolder {
public:
    enum class Missing {
        process,  // the process has ended or is hidden from this user
        answer,   // the process may exist, but can't be read
    };
    static constexpr std::size_t longestPath = 4096;

    ProcFolder();

    // Returns all visible processes. Returns std::nullopt if the list can't be read, or if the entry of a
    // process fails with Missing::answer.
    std::optional<std::vector<ProcessEntry>> entries();
    std::expected<ProcessEntry, Missing> entry(pid_t pid);
    std::expected<ProcessStat, Missing> stat(pid_t pid);
    // Returns the children of all threads of the process. Returns std::nullopt if a thread ends during the
    // call, if a list is too long, or if the kernel has no lists of children.
    std::optional<std::vector<pid_t>> children(pid_t parent);

    // Returns the path of the process's program, without the suffix that Linux appends to the path of a
    // removed file. Returns std::nullopt if the link can't be read.
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
