#pragma once

#include <string_view>

// The sentences of describe(PairingFailure), which are shown to the user. app/texts/LinkTexts.h has the
// sentences about a link that the service refuses, such as one that has expired.
namespace tarnik::PairingFailureTexts {

using Text = std::string_view;

inline constexpr Text notInstalled = "tarnik's helper isn't installed on this Mac yet.";
inline constexpr Text busy =
    "This Mac is already connecting with another link. Finish or cancel that one first.";

}  // namespace tarnik::PairingFailureTexts
