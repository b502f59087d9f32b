// exit_with CODE: exits at once with this code.
#include <cstdlib>

int main(int count, char** arguments) {
    return count > 1 ? std::atoi(arguments[1]) : 0;
}
