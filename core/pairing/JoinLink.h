#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/foundation/Url.h"

// Pairing links: the code in what the user pasted or opened, the address that answers for it, and the join
// address in that answer. Pure functions; what isn't acceptable gives none.
namespace tarnik::JoinLink {

inline constexpr std::string_view codePattern = "^[A-Za-z0-9_-]{22}$";
inline constexpr std::size_t maxTextBytes = 65'536;    // of a link, blanks around it included
inline constexpr std::size_t maxAnswerBytes = 65'536;  // far more than an answer ever needs

// Whether the text, untrimmed, is a code: whether codePattern matches it.
bool isCode(std::string_view text);

// Returns the code of a bare code, of tarnik://connect?code=CODE, or of the web origin with /c/CODE and any
// query and fragment. Blanks around it are ignored.
std::optional<std::string> code(std::string_view text, const Url& webOrigin);

// The web origin with /c/CODE/app.
Url answerURL(std::string_view code, const Url& webOrigin);

// The join address in the answer to `code`, as it stands there. https, or http to this machine itself.
std::optional<Url> joinURL(std::string_view answer, std::string_view code);

}  // namespace tarnik::JoinLink
