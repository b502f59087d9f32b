#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// Returns true if text on this descriptor should be coloured: it is a terminal other than "dumb", and
// NO_COLOR is absent or empty.
bool wantsColours(int fd);

// Writes the results of a command to standard output, and its messages to standard error.
//
// Each call writes at once. If the reader of standard output has gone, the program ends by SIGPIPE without a
// message, as other commands do. One thread at a time.
class CommandOutput {
public:
    enum class Style { plain, bold, dim, red, green, yellow };

    CommandOutput();                  // standard output and standard error
    CommandOutput(int out, int err);  // borrowed descriptors

    bool onTerminal() const { return onTerminal_; }

    // Returns the present width of the terminal in characters, 80 if it is unknown. Returns 0 if standard
    // output isn't a terminal, so that programs get whole lines.
    std::size_t width() const;

    void write(std::string_view text);
    void line(std::string_view text);  // adds a line feed

    // Writes "tarnik: message" as one line to standard error.
    void error(std::string_view message);

    // Writes a line that isn't an error, such as progress, to standard error.
    void note(std::string_view message);

    // Returns true if standard output couldn't be written, as on a full disk.
    bool hasFailed() const { return failed_; }

    // Returns the text for standard output, with escape sequences only if that is a terminal with colours.
    std::string styled(Style style, std::string_view text) const;

private:
    const int out_;
    const int err_;
    const bool onTerminal_;
    const bool coloured_;
    bool failed_ = false;
};

}  // namespace tarnik
