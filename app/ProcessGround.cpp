#include "app/ProcessGround.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "app/ProgramStart.h"

namespace tarnik {
namespace {

std::terminate_handler otherwise = nullptr;

// Queues and the signal watch are made in places that can't go on without them, so std::thread's exception
// ends here.
void onTerminate() {
    try {
        if (const auto thrown = std::current_exception()) std::rethrow_exception(thrown);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::resource_unavailable_try_again) endForLackOfThreads();
    } catch (...) {
        otherwise();  // reports the defect, and does not return
    }
    otherwise();
}

}  // namespace

// Nothing has to be undone: helper and driver notice the end of their pipes.
void endForLackOfThreads() {
    say("the system has no thread to spare; end other programs, then start this one again");
    ::_exit(EXIT_FAILURE);
}

void layProcessGround() {
    int fd = 0;
    do fd = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    while (fd >= 0 && fd <= STDERR_FILENO);  // open(2) takes the lowest free number, and these stay open
    if (fd >= 0) ::close(fd);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);
    otherwise = std::set_terminate(onTerminate);
}

}  // namespace tarnik
