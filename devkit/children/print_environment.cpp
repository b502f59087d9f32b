// print_environment: prints its arguments, then its environment, in the received order: "argument TEXT" and
// "variable NAME=VALUE", one per line.
#include <cstdio>

extern char** environ;

int main(int, char** arguments) {
    for (char** argument = arguments; *argument != nullptr; ++argument)
        std::printf("argument %s\n", *argument);
    for (char** variable = environ; *variable != nullptr; ++variable) std::printf("variable %s\n", *variable);
    return 0;
}
