#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// Decodes base64 text in the standard alphabet, the URL alphabet (RFC 4648, 5) or a mixture. Padding may be
// missing, wholly or in part. Returns std::nullopt for white space, for padding that isn't needed, for an
// impossible length, and for bits set behind the last byte: no two texts may differ only there.
std::optional<std::string> decodeBase64(std::string_view text);

// Returns two lower-case hexadecimal digits for each byte.
std::string encodeHex(std::string_view bytes);

// Returns true if `text` has only lower-case hexadecimal digits.
bool isHex(std::string_view text);

}  // namespace tarnik
