#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// The bytes as UTF-8 text. What isn't valid UTF-8 (overlong forms, surrogates and numbers above U+10FFFF
// included) becomes U+FFFD: one for each longest beginning of a valid sequence, else one for each byte.
std::string decodeLossy(std::string_view bytes);

bool isUtf8(std::string_view bytes);

// `character` is no surrogate and at most U+10FFFF.
void appendUtf8(std::string& text, char32_t character);

// Finds where the last user-perceived characters (extended grapheme clusters) of a growing text begin.
class LastCharacters {
public:
    explicit LastCharacters(std::size_t count) : starts_(count) {}  // `count` is not 0

    // Adds whole code points to the end of the text. Linear in them. A byte that isn't UTF-8 counts as a
    // character.
    void append(std::string_view text);

    // Returns how many bytes come before the last `count` characters: 0 if there are no more than those.
    std::size_t start() const { return characters_ > starts_.size() ? starts_[next_] : 0; }

private:
    bool breaksBefore(std::int32_t next);

    std::vector<std::size_t>
        starts_;            // of the latest characters, each in the place of the one `count` before
    std::size_t next_ = 0;  // in starts_
    std::size_t characters_ = 0;
    std::size_t bytes_ = 0;
    std::int32_t last_ = -1;  // code point; none yet
    std::int32_t breakState_ = 0;
};

}  // namespace tarnik
