#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/foundation/Url.h"

namespace tarnik {

// A pairing link that JoinLink::code has accepted.
struct JoinCode {
    std::string text;  // matches JoinLink::codePattern
    std::string link;  // the link as the user entered it

    bool operator==(const JoinCode&) const = default;
};

// Finds the code in a pairing link, the address of the service's answer to the code, and the join address in
// the answer. Pure functions that return std::nullopt for input that they refuse.
namespace JoinLink {

inline constexpr std::string_view codePattern = "^[A-Za-z0-9_-]{22}$";
inline constexpr std::size_t maxTextBytes = 65'536;    // of a link with its surrounding white space
inline constexpr std::size_t maxAnswerBytes = 65'536;  // far more than an answer needs

// Returns true if the text matches codePattern. White space is not trimmed.
bool isCode(std::string_view text);

// Accepts a bare code, tarnik://connect?code=CODE, and WEB-ORIGIN/c/CODE with any query and fragment. Ignores
// surrounding white space.
std::optional<JoinCode> code(std::string_view text, const Url& webOrigin);

// Returns WEB-ORIGIN/c/CODE/app.
Url answerURL(std::string_view code, const Url& webOrigin);

// Returns the unchanged join address in the service's answer to `code`. Accepts only https, and http with a
// loopback host.
std::optional<Url> joinURL(std::string_view answer, std::string_view code);

}  // namespace JoinLink

}  // namespace tarnik
