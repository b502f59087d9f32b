#pragma once

#include <string>
#include <string_view>

namespace tarnik {

// Returns the text without anything that may be a secret: of a URL only the scheme and the host are kept, and
// long runs of the characters of codes, tokens and keys are replaced, as are values after names such as
// "token=". A long folder name in a path may be replaced too. Linear in the length of the text.
std::string withoutSecrets(std::string_view text);

}  // namespace tarnik
