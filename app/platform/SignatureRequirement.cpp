#include "app/platform/SignatureRequirement.h"

#include <algorithm>

#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

std::optional<std::string> signatureRequirement(std::string_view team) {
    const bool isPlain =
        std::ranges::all_of(team, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
    if (team.empty() || !isPlain) return std::nullopt;
    std::string text = "anchor apple generic and identifier \"";
    text += TarnikIdentity::bundleIdentifier;
    text += "\" and certificate leaf[subject.OU] = \"";
    text += team;
    text += '"';
    return text;
}

}  // namespace tarnik
