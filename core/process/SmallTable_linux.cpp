#include "core/process/SmallTable.h"

#include <optional>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "core/foundation/UniqueFd.h"

namespace tarnik {
namespace {

// From about here on the way around the table costs less than the table.
constexpr int manyDescriptors = 1000;

// New descriptors get the lowest free number, so one that is high tells of at least as many open ones.
bool hasManyDescriptors() {
    return UniqueFd(::open("/dev/null", O_RDONLY | O_CLOEXEC)).get() >= manyDescriptors;
}

// Gives the calling thread a table of its own with nothing but 0 to 2 and, fetched back out of the process's
// table, the files of `streams`. None where the system refuses. Closes nothing: the table goes with the
// thread.
std::optional<StandardStreams> moveToOwnTable(const StandardStreams& streams) {
    constexpr unsigned first = STDERR_FILENO + 1;
    if (::syscall(SYS_close_range, first, ~0U, CLOSE_RANGE_UNSHARE) != 0) return std::nullopt;
    const auto process = ::syscall(SYS_pidfd_open, ::getpid(), 0);
    StandardStreams moved;
    for (std::size_t i = 0; i < streams.size(); ++i) {
        const auto fd = streams[i].descriptor();
        if (!fd) continue;
        const auto fetched = ::syscall(SYS_pidfd_getfd, process, *fd, 0);
        if (fetched <= STDERR_FILENO) return std::nullopt;
        moved[i] = Stdio::fd(static_cast<int>(fetched));
    }
    return moved;
}

}  // namespace

int onSmallTable(const StandardStreams& streams, const std::function<int(const StandardStreams&)>& spawn) {
    if (!hasManyDescriptors()) return spawn(streams);
    std::optional<int> result;
    try {
        std::thread([&] {
            if (const auto moved = moveToOwnTable(streams)) result = spawn(*moved);
        }).join();
    } catch (const std::system_error&) {
        return spawn(streams);  // no thread to be had: the long way works as well
    }
    return result ? *result : spawn(streams);
}

}  // namespace tarnik
