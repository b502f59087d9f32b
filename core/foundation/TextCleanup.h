#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// Returns `text` without leading and trailing white space and line breaks, including those of Unicode.
std::string_view trimWhitespace(std::string_view text);

// Returns untrusted text, such as text from a server or a file, in a form that can be shown inside a
// sentence. Control characters and marks of writing direction are removed, a line end inside the text becomes
// a space, invalid UTF-8 becomes U+FFFD. The result has at most `maxCharacters` code points; if it was cut,
// the last one is an ellipsis.
std::string sanitizedLine(std::string_view bytes, std::size_t maxCharacters);

}  // namespace tarnik
