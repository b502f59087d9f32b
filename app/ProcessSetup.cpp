#include "app/ProcessSetup.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

#include "app/ProgramStart.h"
#include "app/texts/ProgramTexts.h"
#include "core/foundation/ThreadName.h"

namespace tarnik {
namespace {

std::terminate_handler defaultTerminate = nullptr;

// The program can't work without the threads of its queues and of the signal watcher. If std::thread throws,
// the exception is not caught and ends here.
void onTerminate() {
    try {
        if (const auto thrown = std::current_exception()) std::rethrow_exception(thrown);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::resource_unavailable_try_again) exitOutOfThreads();
    } catch (...) {
        defaultTerminate();  // reports the exception and aborts
    }
    defaultTerminate();
}

void openStandardDescriptors() {
    int fd = 0;
    do fd = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    while (fd >= 0 && fd <= STDERR_FILENO);  // open(2) returns the lowest free number; 0 to 2 stay open
    if (fd >= 0) ::close(fd);
}

}  // namespace

// Stops no child. The helper and the driver quit when their pipes close.
void exitOutOfThreads() {
    printError(ProgramTexts::outOfThreads);
    ::_exit(EXIT_FAILURE);
}

// Prints nothing, because standard error may hang like the disk.
void endWithin(Seconds limit, int exitStatus) {
    try {
        std::thread([limit, exitStatus] {
            setThreadName("tarnik.end");
            std::this_thread::sleep_for(limit);
            ::_exit(exitStatus);
        }).detach();
    } catch (const std::system_error&) {
        return;
    }
}

void setUpProcess() {
    openStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);
    defaultTerminate = std::set_terminate(onTerminate);
}

}  // namespace tarnik
