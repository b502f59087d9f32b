#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Cleans the output of a terminal. PairingSession searches it for the prompt.
namespace tarnik::TerminalText {

// Returns terminal output without escape sequences, and without characters below U+0020 except tabs and line
// feeds. An incomplete sequence removes the rest of the text. `text` is valid UTF-8.
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
