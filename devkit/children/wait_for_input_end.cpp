// wait_for_input_end [ignore-term]: prints "ready" and exits with 0 when its standard input ends. With
// ignore-term it ignores SIGTERM.
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string_view>

#include <unistd.h>

int main(int count, char** arguments) {
    if (count > 1 && std::string_view(arguments[1]) == "ignore-term") std::signal(SIGTERM, SIG_IGN);
    alarm(120);  // in case the test doesn't end it
    std::puts("ready");
    std::fflush(stdout);

    std::array<char, 4096> ignored;
    for (;;) {
        const ssize_t got = read(STDIN_FILENO, ignored.data(), ignored.size());
        if (got == 0) return 0;
        if (got < 0 && errno != EINTR) return 1;
    }
}
