#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnik::TerminalText {

// Returns terminal output as plain text: without escape sequences, carriage returns and other control
// characters. Keeps tabs, line feeds and everything from the space up. An incomplete sequence drops the rest
// of the text. One pass. `text` is valid UTF-8.
std::string clean(std::string_view text);

// Cleans a text that arrives in pieces. The result is the same as clean() of the whole text.
class Cleaner {
public:
    enum class State : std::uint8_t { text, escape, controlSequence, systemCommand, systemCommandEscape };

    // Appends the plain text of `piece` to `cleaned`. A piece contains whole characters only.
    void append(std::string_view piece, std::string& cleaned);

    // Returns true if the last piece ended inside an escape sequence.
    bool isInSequence() const { return state_ != State::text; }

private:
    State state_ = State::text;
};

}  // namespace tarnik::TerminalText
