#include "app/ProcessGround.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace tarnik {

void layProcessGround() {
    int fd = 0;
    do fd = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    while (fd >= 0 && fd <= STDERR_FILENO);  // open(2) takes the lowest free number, and these stay open
    if (fd >= 0) ::close(fd);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);
}

}  // namespace tarnik
