// signal_self SIGNAL: ends itself with this signal. Exits with 1 if the signal is ignored or blocked.
#include <csignal>
#include <cstdlib>

#include <sys/resource.h>

int main(int count, char** arguments) {
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    const int number = count > 1 ? std::atoi(arguments[1]) : 0;
    // Removes the handler of a sanitizer, because that handler would exit instead. An ignored signal stays
    // ignored.
    if (std::signal(number, SIG_DFL) == SIG_IGN) std::signal(number, SIG_IGN);
    std::raise(number);
    return 1;
}
