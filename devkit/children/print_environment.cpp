// print_environment: prints its arguments, then its environment, each in the order it got them:
// "argument TEXT" and "variable NAME=VALUE", one a line.
#include <cstdio>

extern char** environ;

int main(int, char** arguments) {
    for (char** argument = arguments; *argument != nullptr; ++argument)
        std::printf("argument %s\n", *argument);
    for (char** variable = environ; *variable != nullptr; ++variable) std::printf("variable %s\n", *variable);
    return 0;
}
