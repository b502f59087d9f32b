#include "core/node/NodeHomeLock.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>

namespace tarnik {

namespace {

constexpr mode_t folderMode = 0700;

int lockWithoutWaiting(const UniqueFd& folder) {
    int result = 0;
    do result = ::flock(folder.get(), LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    return result;
}

}  // namespace

std::expected<NodeHomeLock, NodeHomeLock::Failure> NodeHomeLock::take(const NodeHome& home) {
    using enum Failure::Reason;
    if (const auto made = createFolders(home.path, folderMode); !made)
        return std::unexpected(Failure{unavailable, made.error()});
    UniqueFd folder(::open(home.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return std::unexpected(Failure{unavailable, SystemError::last("open", home.path)});
    if (lockWithoutWaiting(folder) == 0) return NodeHomeLock(std::move(folder));
    const auto error = SystemError::last("flock", home.path);
    return std::unexpected(Failure{error.code == EWOULDBLOCK ? heldElsewhere : unavailable, error});
}

}  // namespace tarnik
