// terminal_echo: prints "tty ROWSxCOLUMNS" (or "no tty"), asks "line? ", reads one line, prints
// "got: LINE" and exits 0. Exit 1 means that its input ended without a line.
#include <cstdio>
#include <iostream>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

int main() {
    alarm(120);  // a test that lost it must not leave it behind
    winsize size{};
    if (ioctl(STDIN_FILENO, TIOCGWINSZ, &size) == 0)
        std::cout << "tty " << size.ws_row << 'x' << size.ws_col << '\n';
    else
        std::cout << "no tty\n";
    std::cout << "line? " << std::flush;

    std::string line;
    if (!std::getline(std::cin, line)) return 1;
    std::cout << "got: " << line << std::endl;
    return 0;
}
