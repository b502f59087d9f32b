#include "core/foundation/TextCleanup.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "core/foundation/Utf8.h"

namespace tarnik {

namespace {

// The tab, the line breaks and the space separators of Unicode, as UTF-8.
// clang-format off
constexpr std::string_view blanks[] = {
    "\t", "\n", "\v", "\f", "\r", " ", "\xC2\x85", "\xC2\xA0", "\xE1\x9A\x80",
    "\xE2\x80\x80", "\xE2\x80\x81", "\xE2\x80\x82", "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85",
    "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88", "\xE2\x80\x89", "\xE2\x80\x8A",
    "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"};
// clang-format on

bool removeFirst(std::string_view& text) {
    const auto* at = std::ranges::find_if(blanks, [text](auto blank) { return text.starts_with(blank); });
    if (at == std::end(blanks)) return false;
    text.remove_prefix(at->size());
    return true;
}

bool removeLast(std::string_view& text) {
    const auto* at = std::ranges::find_if(blanks, [text](auto blank) { return text.ends_with(blank); });
    if (at == std::end(blanks)) return false;
    text.remove_suffix(at->size());
    return true;
}

struct Range {
    char32_t first;
    char32_t last;
};

// Control characters, separators of lines and paragraphs, marks of writing direction.
constexpr std::array<Range, 6> dropped{
    {{0x00, 0x1F}, {0x7F, 0x9F}, {0x061C, 0x061C}, {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}}};

bool isDropped(char32_t character) {
    return std::ranges::any_of(
        dropped, [=](Range range) { return character >= range.first && character <= range.last; });
}

// Returns true for a tab or a line end. A space replaces the character, so that words stay separate.
bool separates(char32_t character) {
    return (character >= 0x09 && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

// The first code point of a text: its bytes and its number.
struct Taken {
    std::string_view bytes;
    char32_t character;
};

// Removes the first code point and returns it. `text` is valid UTF-8 and not empty.
Taken takeFirst(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    Taken taken{text.substr(0, length), length == 1 ? lead : lead & (0x7FU >> length)};
    for (const char byte : taken.bytes.substr(1))
        taken.character = taken.character << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
    text.remove_prefix(length);
    return taken;
}

}  // namespace

std::string_view trimWhitespace(std::string_view text) {
    while (removeFirst(text)) continue;
    while (removeLast(text)) continue;
    return text;
}

std::string sanitizedLine(std::string_view bytes, std::size_t maxCharacters) {
    const std::string text = decodeLossy(bytes);
    std::string line;
    std::size_t count = 0;
    std::size_t lastAt = 0;
    for (std::string_view rest = text; !rest.empty();) {
        Taken next = takeFirst(rest);
        if (separates(next.character)) {
            if (line.empty() || line.ends_with(' ') || rest.empty()) continue;
            next = {" ", U' '};
        }
        if (isDropped(next.character)) continue;
        if (count == maxCharacters) return line.substr(0, lastAt) + "\xE2\x80\xA6";
        lastAt = line.size();
        line += next.bytes;
        ++count;
    }
    return line;
}

}  // namespace tarnik
