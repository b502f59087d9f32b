#include "core/process/ProgramImage.h"

#include <cerrno>
#include <csignal>
#include <ctime>

#include <sys/syscall.h>
#include <unistd.h>

#include "core/process/CStringArray.h"
#include "core/process/SpawnPlatform.h"

namespace tarnik {

struct ProgramImage::Prepared {
    std::string executable;
    CStringArray arguments;
    CStringArray environment;
};

namespace {

// Closes all descriptors but the standard ones, because a library's descriptor may not be close-on-exec.
void closeOthers() {
    constexpr unsigned first = STDERR_FILENO + 1;
    if (::syscall(SYS_close_range, first, ~0U, 0) == 0) return;
    for (int fd = first; fd < 4096; ++fd) ::close(fd);  // a kernel before 5.9
}

void resetSignals() {
    struct sigaction byDefault{};
    byDefault.sa_handler = SIG_DFL;
    // The call fails, as expected, for SIGKILL, SIGSTOP and the two signals that the C library reserves.
    for (int signal = 1; signal < NSIG; ++signal) ::sigaction(signal, &byDefault, nullptr);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace

ProgramImage::ProgramImage(const SpawnRequest& request)
    : prepared_(new Prepared{request.executable, CStringArray::arguments(request),
                             CStringArray::environment(request.environment)}) {}

ProgramImage::~ProgramImage() = default;

void ProgramImage::become() const {
    resetSignals();
    closeOthers();
    for (int attempt = 0; attempt <= busyRetries; ++attempt) {
        ::execve(prepared_->executable.c_str(), prepared_->arguments.get(), prepared_->environment.get());
        if (errno != ETXTBSY) return;
        constexpr timespec pause{.tv_sec = 0, .tv_nsec = std::chrono::nanoseconds(busyPause).count()};
        ::nanosleep(&pause, nullptr);
    }
}

}  // namespace tarnik
