#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnik::TerminalText {

// Returns what a terminal was sent as plain text to show and to search: without escape sequences, carriage
// returns and the other control characters. Tabs, line feeds and everything from the space up stay. A
// sequence that isn't complete takes the rest of the text with it. One pass; `text` is valid UTF-8.
std::string clean(std::string_view text);

// Cleans a text that arrives in pieces: what it appends for all of them is what clean() returns for the
// whole.
class Cleaner {
public:
    enum class State : std::uint8_t { text, escape, controlSequence, systemCommand, systemCommandEscape };

    // Appends the plain text of `piece`, which holds whole characters, to `cleaned`.
    void append(std::string_view piece, std::string& cleaned);

    // Returns true if the last piece ended inside an escape sequence.
    bool isInSequence() const { return state_ != State::text; }

private:
    State state_ = State::text;
};

}  // namespace tarnik::TerminalText
