// exit_with CODE: ends at once with this exit code.
#include <cstdlib>

int main(int count, char** arguments) {
    return count > 1 ? std::atoi(arguments[1]) : 0;
}
