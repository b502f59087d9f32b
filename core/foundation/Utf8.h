#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// Returns the bytes as valid UTF-8. Invalid sequences, including overlong forms, surrogates and numbers above
// U+10FFFF, become U+FFFD. One U+FFFD replaces the longest run of bytes that could begin a valid sequence,
// and one replaces each other byte.
std::string decodeLossy(std::string_view bytes);

bool isUtf8(std::string_view bytes);

// `character` is not a surrogate and at most U+10FFFF.
void appendUtf8(std::string& text, char32_t character);

// Finds the start of the last user-perceived characters (extended grapheme clusters) of a growing text.
class LastCharacters {
public:
    explicit LastCharacters(std::size_t count) : starts_(count) {}  // `count` is not 0

    // Appends to the growing text, in linear time. `text` doesn't begin or end within a code point. Each
    // invalid byte counts as a code point.
    void append(std::string_view text);

    // Returns the number of bytes before the last `count` characters, or 0 if the text has at most `count`.
    std::size_t start() const { return characters_ > starts_.size() ? starts_[next_] : 0; }

private:
    bool breaksBefore(std::int32_t next);

    std::vector<std::size_t> starts_;  // of the last `count` characters, as a ring
    std::size_t next_ = 0;             // index in starts_
    std::size_t characters_ = 0;
    std::size_t bytes_ = 0;
    std::int32_t last_ = -1;  // the last code point; -1 before the first
    std::int32_t breakState_ = 0;
};

}  // namespace tarnik
