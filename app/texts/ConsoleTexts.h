#pragma once

// The hints, answers and errors of the console.
namespace tarnik::ConsoleTexts {

using Text = const char*;

inline constexpr Text help =
    "a link from your chat pairs this computer; Enter or confirm answers the pairing prompt; cancel ends the "
    "pairing; replace or keep answers the offer of another account; done; window; switch "
    "accessibility|screen "
    "on|off; request accessibility|screen; updates; status; sample; quit";

inline constexpr Text pasteLink = "Paste the link from your chat here.";
inline constexpr Text answerOffer =
    "Type replace to connect to the new account, keep to stay with the current one.";
inline constexpr Text answerPrompt = "Press Enter here to connect, or type cancel.";

inline constexpr Text runConnect = "Run tarnik connect to connect this computer.";

inline constexpr Text noOffer = "there is no offer to answer";
inline constexpr Text nothingToConfirm = "there is nothing to confirm";
inline constexpr Text noPairing = "no pairing is in progress";
inline constexpr Text lineTooLong = "that line is too long";
inline constexpr Text switchUsage = "that is: switch accessibility on, or off; switch screen on, or off";

}  // namespace tarnik::ConsoleTexts
