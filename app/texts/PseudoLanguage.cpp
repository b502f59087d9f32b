#include "app/texts/PseudoLanguage.h"

#include <array>
#include <cstddef>

namespace tarnik {
namespace {

using Letters = std::array<std::string_view, 26>;

constexpr Letters accentedSmall{"á", "ƀ", "ç", "ð", "é", "ƒ", "ĝ", "ĥ", "í", "ĵ", "ķ", "ļ", "ɱ",
                                "ñ", "ö", "þ", "ǫ", "ŕ", "š", "ť", "ü", "ṽ", "ŵ", "ẋ", "ý", "ž"};
constexpr Letters accentedCapital{"Å", "Ɓ", "Ç", "Ð", "É", "Ƒ", "Ĝ", "Ĥ", "Î", "Ĵ", "Ķ", "Ļ", "Ṁ",
                                  "Ñ", "Ö", "Þ", "Ǫ", "Ŕ", "Š", "Ť", "Ü", "Ṽ", "Ŵ", "Ẋ", "Ý", "Ž"};
constexpr Letters hebrew{"א", "ב", "צ", "ד", "ה", "פ", "ג", "ח", "י", "ז", "כ", "ל", "מ",
                         "נ", "ו", "פ", "ק", "ר", "ש", "ת", "ו", "ב", "ע", "צ", "י", "ז"};

// Returns an empty text for a character that is not an ASCII letter.
std::string_view replacement(char letter, PseudoLanguage language) {
    const bool isRightToLeft = language == PseudoLanguage::rightToLeft;
    if (letter >= 'a' && letter <= 'z')
        return (isRightToLeft ? hebrew : accentedSmall).at(static_cast<std::size_t>(letter - 'a'));
    if (letter >= 'A' && letter <= 'Z')
        return (isRightToLeft ? hebrew : accentedCapital).at(static_cast<std::size_t>(letter - 'A'));
    return {};
}

}  // namespace

std::string pseudoText(std::string_view english, PseudoLanguage language) {
    constexpr int doubledLetter = 3;  // each third letter is doubled
    std::string result = "[";
    bool isInPlaceholder = false;
    int letters = 0;
    for (const char character : english) {
        if (character == '{') isInPlaceholder = true;
        if (character == '}') isInPlaceholder = false;
        const auto letter = isInPlaceholder ? std::string_view() : replacement(character, language);
        if (letter.empty()) {
            result += character;
            continue;
        }
        result += letter;
        if (++letters % doubledLetter == 0) result += letter;
    }
    return result + "]";
}

}  // namespace tarnik
