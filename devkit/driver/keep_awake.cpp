// keep_awake: stand-in for the program that keeps a machine awake. It sleeps until it is signalled or its
// standard input ends.
#include <array>
#include <cerrno>

#include <unistd.h>

int main() {
    alarm(120);  // a process that its test lost must not stay
    std::array<char, 256> ignored;
    for (;;) {
        const ssize_t got = read(STDIN_FILENO, ignored.data(), ignored.size());
        if (got == 0) return 0;
        if (got < 0 && errno != EINTR) return 1;
    }
}
