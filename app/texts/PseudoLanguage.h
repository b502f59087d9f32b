#pragma once

#include <string>
#include <string_view>

namespace tarnik {

// Languages that don't exist, for checks of the layout. Both are a third longer than English and put every
// text in brackets, so that a reader sees a text that is cut or not translated. One has accents above its
// letters, the other is written from right to left.
enum class PseudoLanguage { accented, rightToLeft };

// Returns the English text in the language. Its placeholders stay as they are.
std::string pseudoText(std::string_view english, PseudoLanguage language);

}  // namespace tarnik
