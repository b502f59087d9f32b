#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarnik {

// The parts of the program that the front doesn't contain. On Linux each is an executable beside the front,
// and replaces this process; on macOS one executable has them all. Each takes the arguments of main() and
// returns the exit status.
struct ProgramParts {
    using Run = std::function<int(char** argv)>;

    Run window;   // the window, and the screens for developers
    Run console;  // --console, and the commands that need more than the front contains
};

// Runs the program with the arguments of main(): prints help, runs a command, or calls one of the parts.
int runFront(int argc, char** argv, const ProgramParts& parts);

// Returns the arguments after the program's name.
std::vector<std::string> wordsOf(char** argv);

}  // namespace tarnik
