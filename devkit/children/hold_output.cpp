// hold_output SECONDS: starts a background process that keeps the output (a pipe or a terminal) open for this
// time. Prints the id of that process and exits at once.
//
// On macOS a terminal is closed for all processes when its session leader ends, so only a pipe can be kept
// open.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <unistd.h>

int main(int count, char** arguments) {
    const std::chrono::duration<double> held(count > 1 ? std::atof(arguments[1]) : 1.0);
    std::signal(SIGHUP, SIG_IGN);  // sent when the session leader, this process, ends
    const pid_t holder = fork();
    if (holder < 0) return 1;
    if (holder == 0) {
        std::this_thread::sleep_for(held);
        _exit(0);
    }
    std::printf("%ld\n", static_cast<long>(holder));
    return 0;
}
