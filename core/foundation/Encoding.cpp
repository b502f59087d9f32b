#include "core/foundation/Encoding.h"

#include <cstddef>
#include <cstdint>

namespace tarnik {

namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";

std::optional<std::uint32_t> sixBits(char character) {
    const auto from = [character](char first, std::uint32_t value) {
        return value + static_cast<std::uint32_t>(character - first);
    };
    if (character >= 'A' && character <= 'Z') return from('A', 0);
    if (character >= 'a' && character <= 'z') return from('a', 26);
    if (character >= '0' && character <= '9') return from('0', 52);
    if (character == '+' || character == '-') return 62;
    if (character == '/' || character == '_') return 63;
    return std::nullopt;
}

// Removes the padding. Keeps padding that is longer than the text needs, so that decoding fails.
std::string_view withoutPadding(std::string_view text) {
    const std::size_t digits = text.find_last_not_of('=') + 1;  // npos + 1 is 0
    const std::size_t wanted = (4 - digits % 4) % 4;
    return text.size() - digits <= wanted ? text.substr(0, digits) : text;
}

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text) {
    const std::string_view digits = withoutPadding(text);
    if (digits.size() % 4 == 1) return std::nullopt;
    std::string bytes;
    bytes.reserve(digits.size() / 4 * 3 + 2);
    std::uint32_t bits = 0;  // the lowest `count` bits are not yet written
    unsigned count = 0;
    for (const char digit : digits) {
        const auto value = sixBits(digit);
        if (!value) return std::nullopt;
        bits = bits << 6U | *value;
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count);
        bits &= (1U << count) - 1;
    }
    if (bits != 0) return std::nullopt;
    return bytes;
}

std::string encodeHex(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        const auto number = static_cast<unsigned char>(byte);
        text += hexDigits[number >> 4U];
        text += hexDigits[number & 0x0FU];
    }
    return text;
}

bool isHex(std::string_view text) {
    return text.find_first_not_of(hexDigits) == text.npos;
}

}  // namespace tarnik
