// keep_awake: stands for the program that holds a machine awake. Does nothing at all until it is signalled
// or its standard input ends.
#include <array>
#include <cerrno>

#include <unistd.h>

int main() {
    alarm(120);  // a test that lost it must not leave it behind
    std::array<char, 256> ignored;
    for (;;) {
        const ssize_t got = read(STDIN_FILENO, ignored.data(), ignored.size());
        if (got == 0) return 0;
        if (got < 0 && errno != EINTR) return 1;
    }
}
