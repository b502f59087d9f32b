#pragma once

#include <string>
#include <string_view>

namespace tarnik {

// The text as a JSON string, in double quotes. Only the quote, the backslash and the characters below 32 are
// escaped: "/", delete and everything beyond ASCII stand as they are. `text` should be valid UTF-8.
std::string quotedJson(std::string_view text);

}  // namespace tarnik
