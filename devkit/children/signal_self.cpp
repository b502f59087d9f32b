// signal_self SIGNAL: ends by this signal. Exit 1 means that the signal did nothing, as when it is
// ignored or blocked.
#include <csignal>
#include <cstdlib>

#include <sys/resource.h>

int main(int count, char** arguments) {
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    const int number = count > 1 ? std::atoi(arguments[1]) : 0;
    // A sanitizer's handler would turn some signals into an exit; an ignored one is left as it is.
    if (std::signal(number, SIG_DFL) == SIG_IGN) std::signal(number, SIG_IGN);
    std::raise(number);
    return 1;
}
