// signal_self SIGNAL: ends by this signal. Exit 1 means that the signal did nothing, as when it is
// ignored or blocked.
#include <csignal>
#include <cstdlib>

#include <sys/resource.h>

int main(int count, char** arguments) {
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    if (count > 1) std::raise(std::atoi(arguments[1]));
    return 1;
}
