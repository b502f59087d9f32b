#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// Decodes base64 text in the standard alphabet, the URL alphabet (RFC 4648, section 5) or a mixture. All or
// part of the padding may be missing. Returns std::nullopt for any other character, for excess padding, for
// an impossible length, and if a bit after the last whole byte is set. So, apart from the padding, each
// value has one text in each alphabet.
std::optional<std::string> decodeBase64(std::string_view text);

// Returns two lower-case hexadecimal digits for each byte.
std::string encodeHex(std::string_view bytes);

// Returns true if `text` is empty or contains only lower-case hexadecimal digits.
bool isHex(std::string_view text);

}  // namespace tarnik
