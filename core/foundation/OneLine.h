#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// Text from outside (a server's, a file's), fit to stand inside a sentence that the user is shown: without
// control characters and marks that turn the direction of writing, a blank for each line end, and at most
// `maxCharacters` code points long, the last one an ellipsis where it was cut. What isn't UTF-8 becomes
// U+FFFD.
std::string oneLine(std::string_view bytes, std::size_t maxCharacters);

}  // namespace tarnik
