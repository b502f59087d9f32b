#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// Returns the source text of a code requirement: our bundle identifier, and a certificate that Apple issued
// to this team. The team becomes part of the text, so only capital letters and digits are accepted. Returns
// std::nullopt for any other team.
std::optional<std::string> signatureRequirement(std::string_view team);

}  // namespace tarnik
