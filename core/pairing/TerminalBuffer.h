#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/foundation/Utf8.h"
#include "core/pairing/TerminalDisplay.h"
#include "core/pairing/TerminalText.h"

namespace tarnik {

// The last part of a program's terminal output, as plain text. append() usually cleans only the new bytes.
//
// A value. text() equals TerminalText::clean() of the kept output.
class TerminalBuffer {
public:
    static constexpr std::size_t maxTextBytes = 16384;    // a longer decoded output is cut
    static constexpr std::size_t keptCharacters = 8192;   // user-perceived characters left by a cut
    static constexpr std::size_t maxKeptBytes = 262'144;  // if a cut leaves more, half of this number is kept

    // Decodes each call's bytes separately, so a character that is split between two calls becomes
    // replacement characters. Returns the first offset at which text() may have changed.
    std::size_t append(std::string_view bytes);

    const std::string& text() const { return text_; }

    // Returns the end of the output as a person reads it. Its bound differs from the bound of text().
    const std::string& displayText() const { return display_.text(); }

    // Returns the number of bytes of plain text that were cut off before text().
    std::uint64_t textStart() const { return textStart_; }

private:
    std::size_t cut(std::size_t bytes);
    void shorten();
    void cleanAgain();

    std::string kept_;  // decoded, not cleaned
    LastCharacters characters_{keptCharacters};
    std::size_t keptStart_ = 0;  // the offset of kept_ in the input of characters_
    TerminalText::Cleaner cleaner_;
    std::string text_;
    std::uint64_t textStart_ = 0;
    TerminalDisplay display_;
};

}  // namespace tarnik
