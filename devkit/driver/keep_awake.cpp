// keep_awake: stand-in for the program that keeps a machine awake. It waits for a signal or for the end of
// its standard input.
#include <array>
#include <cerrno>

#include <unistd.h>

int main() {
    alarm(120);  // in case the test doesn't end it
    std::array<char, 256> ignored;
    for (;;) {
        const ssize_t got = read(STDIN_FILENO, ignored.data(), ignored.size());
        if (got == 0) return 0;
        if (got < 0 && errno != EINTR) return 1;
    }
}
