#pragma once

#include <string>
#include <string_view>

namespace tarnik {

// Returns the text without anything that may be a secret: without named secrets and without long tokens.
// Linear in the length of the text.
std::string withoutSecrets(std::string_view text);

// Returns the text without the details of URLs and without values after names such as "token=", "--password"
// and "Cookie:". Of a URL only the scheme and the host are kept. A quoted value is hidden up to its closing
// quote, the value of a header such as "Cookie:" to the end of the line, and the value of a name such as
// "password" with all words up to the next name.
std::string withoutNamedSecrets(std::string_view text);

// Returns the text without long runs of the characters of codes, tokens and keys. A long folder name in a
// path may be replaced too.
std::string withoutLongTokens(std::string_view text);

}  // namespace tarnik
