#include "core/foundation/Utf8.h"

#include <algorithm>
#include <array>
#include <utility>

#include <utf8proc.h>

namespace tarnik {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

unsigned char byteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

bool within(unsigned char byte, unsigned char lowest, unsigned char highest) {
    return lowest <= byte && byte <= highest;
}

// Returns the length of the ASCII prefix. Checks whole blocks first, for speed.
std::size_t asciiPrefix(std::string_view text) {
    constexpr std::size_t block = 32;
    std::size_t length = 0;
    while (text.size() - length >= block) {
        unsigned char bits = 0;
        for (std::size_t i = 0; i < block; ++i) bits |= byteAt(text, length + i);
        if (bits >= 0x80) break;
        length += block;
    }
    while (length < text.size() && byteAt(text, length) < 0x80) ++length;
    return length;
}

// The first character of a text that isn't empty, or the bytes that one U+FFFD replaces.
struct Sequence {
    std::size_t length;
    bool valid;
};

Sequence firstSequence(std::string_view text) {
    const unsigned char lead = byteAt(text, 0);
    if (lead < 0x80) return {.length = 1, .valid = true};
    if (!within(lead, 0xC2, 0xF4)) return {.length = 1, .valid = false};

    // Only the second byte has special bounds: they exclude overlong forms, surrogates and too large numbers.
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (text.size() < 2 || !within(byteAt(text, 1), lowest, highest)) return {.length = 1, .valid = false};
    for (std::size_t i = 2; i < length; ++i) {
        if (i == text.size() || !within(byteAt(text, i), 0x80, 0xBF)) return {.length = i, .valid = false};
    }
    return {.length = length, .valid = true};
}

std::size_t validPrefix(std::string_view text) {
    std::size_t length = 0;
    while (true) {
        length += asciiPrefix(text.substr(length));
        if (length == text.size()) return length;
        const Sequence sequence = firstSequence(text.substr(length));
        if (!sequence.valid) return length;
        length += sequence.length;
    }
}

// The code point at the start of a text, and its number of bytes.
struct CodePoint {
    utf8proc_int32_t number;
    std::size_t length;
};

CodePoint firstCodePoint(std::string_view text) {
    const unsigned char lead = byteAt(text, 0);
    if (lead < 0x80) return {.number = lead, .length = 1};
    std::array<utf8proc_uint8_t, 4> bytes{};
    const std::size_t available = std::min(text.size(), bytes.size());
    std::copy_n(text.begin(), available, bytes.begin());
    utf8proc_int32_t number = 0;
    const auto length = utf8proc_iterate(bytes.data(), static_cast<utf8proc_ssize_t>(available), &number);
    if (length < 1) return {.number = 0xFFFD, .length = 1};
    return {.number = number, .length = static_cast<std::size_t>(length)};
}

}  // namespace

std::string decodeLossy(std::string_view bytes) {
    std::size_t valid = validPrefix(bytes);
    std::string text(bytes.substr(0, valid));
    while (valid < bytes.size()) {
        bytes.remove_prefix(valid);
        text += replacement;
        bytes.remove_prefix(firstSequence(bytes).length);
        valid = validPrefix(bytes);
        text += bytes.substr(0, valid);
    }
    return text;
}

bool isUtf8(std::string_view bytes) {
    return validPrefix(bytes) == bytes.size();
}

void appendUtf8(std::string& text, char32_t character) {
    std::array<utf8proc_uint8_t, 4> bytes{};
    const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(character), bytes.data());
    text.append(bytes.begin(), bytes.begin() + length);
}

void LastCharacters::append(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const CodePoint point = firstCodePoint(text.substr(at));
        if (breaksBefore(point.number)) {
            starts_[next_] = bytes_ + at;
            if (++next_ == starts_.size()) next_ = 0;
            ++characters_;
        }
        at += point.length;
    }
    bytes_ += text.size();
}

// Returns true if a character ends before `next`.
bool LastCharacters::breaksBefore(std::int32_t next) {
    const std::int32_t before = std::exchange(last_, next);
    if (before < 0) return true;
    if (before < 0x80 && next < 0x80) {
        breakState_ = 0;  // two ASCII characters leave no state for later breaks
        return before != '\r' || next != '\n';
    }
    return utf8proc_grapheme_break_stateful(before, next, &breakState_);
}

}  // namespace tarnik
