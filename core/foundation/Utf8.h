#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// The bytes as UTF-8 text. What isn't valid UTF-8 (overlong forms, surrogates and numbers above U+10FFFF
// included) becomes U+FFFD: one for each longest beginning of a valid sequence, else one for each byte.
std::string decodeLossy(std::string_view bytes);

bool isUtf8(std::string_view bytes);

// `character` is no surrogate and at most U+10FFFF.
void appendUtf8(std::string& text, char32_t character);

// The end of `text` that holds its last `count` user-perceived characters (extended grapheme clusters);
// the whole of it when it has no more than those. Linear. A byte that isn't UTF-8 counts as a character.
std::string_view lastCharacters(std::string_view text, std::size_t count);

}  // namespace tarnik
