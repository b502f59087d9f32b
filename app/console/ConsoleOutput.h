#pragma once

#include <string_view>

namespace tarnik {

// Writes the console's lines: a time, a word, the rest. Coloured only on a terminal, and not where NO_COLOR
// is set. Used on the main thread.
class ConsoleOutput {
public:
    ConsoleOutput();

    // On standard output: "12:00:01.250 state running".
    void line(std::string_view word, std::string_view rest);

    // On standard error: "12:00:01.250 the node stopped (exit 1)".
    void message(std::string_view text);

    // Only for a person at a terminal.
    void hint(std::string_view text);

private:
    const bool coloured_;
    const bool colouredMessages_;
};

}  // namespace tarnik
