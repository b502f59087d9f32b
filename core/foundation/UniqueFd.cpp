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
    // Not retried on EINTR, because the number is free in any case and another thread may already use it.
    ::close(held);
    errno = error;
}

UniqueFd UniqueFd::duplicate(int fd) {
    return UniqueFd(::fcntl(fd, F_DUPFD_CLOEXEC, 3));
}

}  // namespace tarnik
