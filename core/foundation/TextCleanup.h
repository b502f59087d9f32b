#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// Returns `text` without leading and trailing white space and line breaks, as Unicode defines them.
std::string_view trimWhitespace(std::string_view text);

// Returns untrusted text, such as text from a server or a file, in a form that can be shown inside a
// sentence. Replaces tabs and line ends inside the text by spaces, and invalid UTF-8 by U+FFFD. Removes other
// control characters and marks of writing direction. The result has at most `maxCharacters` code points. If
// the text was cut, the last code point is an ellipsis.
std::string sanitizedLine(std::string_view bytes, std::size_t maxCharacters);

}  // namespace tarnik
