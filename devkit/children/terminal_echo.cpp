// terminal_echo: prints "tty ROWSxCOLUMNS" (or "no tty"), prints "line? ", reads one line, prints
// "got: LINE" and exits with 0. Exits with 1 if its input ends without a line.
#include <cstdio>
#include <iostream>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

int main() {
    alarm(120);  // in case the test doesn't end it
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
