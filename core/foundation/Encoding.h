#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// Decodes base64 text in the standard alphabet, the URL alphabet (RFC 4648, section 5) or a mixture. All or
// part of the padding may be missing. Returns std::nullopt for white space, for excess padding, for an
// impossible length, and for set bits after the last byte, so that no two valid texts differ only in these
// bits.
std::optional<std::string> decodeBase64(std::string_view text);

// Returns two lower-case hexadecimal digits for each byte.
std::string encodeHex(std::string_view bytes);

// Returns true if `text` contains only lower-case hexadecimal digits, also if it is empty.
bool isHex(std::string_view text);

}  // namespace tarnik
