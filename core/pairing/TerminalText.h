#pragma once

#include <string>
#include <string_view>

namespace tarnik::TerminalText {

// What a terminal was sent, as plain text to show and to search: without escape sequences, carriage returns
// and the other control characters; tabs, line feeds and all from the space up stay. A sequence that isn't
// complete takes the rest of the text with it. One pass; `text` is valid UTF-8.
std::string clean(std::string_view text);

}  // namespace tarnik::TerminalText
