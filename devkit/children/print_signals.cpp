// print_signals: prints "ignored N" and "blocked N" for every signal that is ignored or blocked, one per
// line.
#include <csignal>
#include <cstdio>

int main() {
    sigset_t blocked;
    if (sigprocmask(SIG_BLOCK, nullptr, &blocked) != 0) return 1;
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action = {};
        const bool exists = sigaction(number, nullptr, &action) == 0;  // the C library reserves some signals
        if (exists && action.sa_handler == SIG_IGN) std::printf("ignored %d\n", number);
        if (sigismember(&blocked, number) == 1) std::printf("blocked %d\n", number);
    }
    return 0;
}
