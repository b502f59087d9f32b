#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// The bytes of base64 text, in the standard alphabet, the one for URLs (RFC 4648, 5) or a mixture; the
// padding may be missing, wholly or in part. None when anything else is in it: blanks and line ends, padding
// that isn't needed, a length that can't be, or bits set behind the last byte, so that no two texts differ
// only there.
std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace tarnik
