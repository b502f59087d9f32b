#include "core/foundation/UniqueFd.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace tarnik {

void UniqueFd::reset(int fd) {
    const int held = fd_;
    fd_ = fd;
    if (held < 0) return;
    const int error = errno;
    // Not repeated on EINTR: the number is free again either way, and may already be somebody else's.
    ::close(held);
    errno = error;
}

UniqueFd UniqueFd::duplicate(int fd) {
    return UniqueFd(::fcntl(fd, F_DUPFD_CLOEXEC, 3));
}

}  // namespace tarnik
