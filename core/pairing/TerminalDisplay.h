#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/pairing/TerminalText.h"

namespace tarnik {

// The end of a program's terminal output as a person reads it: plain text in which a carriage return starts
// the line anew, as progress lines do. A line that is overwritten by a shorter one is removed as a whole.
//
// A value. append() takes time linear in the new bytes.
class TerminalDisplay {
public:
    static constexpr std::size_t maxTextBytes = 16384;  // a longer text loses its first half

    // Appends decoded output, which consists of whole characters.
    void append(std::string_view decoded);

    const std::string& text() const { return text_; }

private:
    void appendPiece(std::string_view piece);
    void shorten();

    TerminalText::Cleaner cleaner_;
    std::string text_;
    std::size_t lineStart_ = 0;    // of the last line of text_
    bool startsLineAnew_ = false;  // the next character replaces the last line, unless it ends the line
};

}  // namespace tarnik
