#include "core/foundation/OneLine.h"

#include <algorithm>
#include <array>

#include "core/foundation/Utf8.h"

namespace tarnik {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// Controls, separators of lines and paragraphs, marks of direction.
constexpr std::array<Range, 6> dropped{
    {{0x00, 0x1F}, {0x7F, 0x9F}, {0x061C, 0x061C}, {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}}};

bool isDropped(char32_t character) {
    return std::ranges::any_of(
        dropped, [=](Range range) { return character >= range.first && character <= range.last; });
}

// Line feed and the like, which keep words apart.
bool separates(char32_t character) {
    return (character >= 0x09 && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

// Takes the first code point off valid UTF-8: its bytes, and its number.
struct Taken {
    std::string_view bytes;
    char32_t character;
};
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

std::string oneLine(std::string_view bytes, std::size_t maxCharacters) {
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
