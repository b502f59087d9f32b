#pragma once

#include <string_view>

// The messages about a pairing link. describe(PairingFailure) returns the messages about a refused pairing.
namespace tarnik::LinkTexts {

using Text = std::string_view;

inline constexpr Text checkingLink = "Checking the link…";
inline constexpr Text notALink =
    "That doesn't look like a link from tarnik. Copy the whole link from your chat and paste it here.";
inline constexpr Text stillInstalling = "tarnik's helper is still installing. Try again in a moment.";
inline constexpr Text pairingNotAllowed =
    "Your organisation doesn't allow pairing this computer with an account.";
inline constexpr Text replacingNotAllowed =
    "Your organisation doesn't allow pairing this computer with another account.";
inline constexpr Text linkExpired = "This link has expired or was already used. Ask tarnik for a new one.";

}  // namespace tarnik::LinkTexts
