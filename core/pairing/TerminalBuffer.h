#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/foundation/Utf8.h"
#include "core/pairing/TerminalText.h"

namespace tarnik {

// The end of what a program printed on a terminal, as plain text. Each call costs what its bytes cost,
// however much text there is.
//
// A value. text() is TerminalText::clean of the decoded output that is kept.
class TerminalBuffer {
public:
    static constexpr std::size_t maxTextBytes = 16384;    // of decoded output; more is cut
    static constexpr std::size_t keptCharacters = 8192;   // user-perceived ones, after a cut
    static constexpr std::size_t maxKeptBytes = 262'144;  // of keptCharacters; of more, half of this is kept

    // Decodes `bytes` by themselves: a character that two calls share becomes replacement characters. Returns
    // the place in text() behind which it may have changed.
    std::size_t append(std::string_view bytes);

    const std::string& text() const { return text_; }

    // The number of bytes of plain text that were cut off before text().
    std::uint64_t textStart() const { return textStart_; }

private:
    std::size_t cut(std::size_t bytes);
    void shorten();
    void cleanAgain();

    std::string kept_;  // decoded, not cleaned
    LastCharacters characters_{keptCharacters};
    std::size_t keptStart_ = 0;  // of kept_ in what characters_ was given
    TerminalText::Cleaner cleaner_;
    std::string text_;
    std::uint64_t textStart_ = 0;
};

}  // namespace tarnik
