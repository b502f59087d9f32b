#pragma once

#include <string_view>

// The sentences that the running program sends to commands.
namespace tarnik::ControlTexts {

using Text = std::string_view;

inline constexpr Text malformed = "The request is malformed.";
inline constexpr Text otherVersion = "The running tarnik is of another version. Quit it and open it again.";
inline constexpr Text unknownRequest =
    "The running tarnik doesn't know this command. Quit it and open it again, so that the new version runs.";
inline constexpr Text requestTooLong = "The request is too long.";
inline constexpr Text tooManyClients = "Too many commands use the running tarnik. End some of them.";
inline constexpr Text idInUse = "The connection has an open stream with this id.";
inline constexpr Text streamOpen = "The connection has an open stream already.";
inline constexpr Text stopping = "tarnik is quitting.";

inline constexpr Text replaceHint =
    "This computer is already paired with an account. To end that connection and use the new link, add "
    "--replace.";
inline constexpr Text pairingCancelled = "The pairing was cancelled.";
inline constexpr Text noWindow =
    "The running tarnik has no window. To see one, quit it (tarnik quit) and start tarnik.";
inline constexpr Text nothingToConfirm = "No pairing waits for a confirmation.";
inline constexpr Text noPairing = "No pairing is in progress.";
inline constexpr Text pairingInProgress = "A pairing is in progress. Wait until it has ended.";
inline constexpr Text notJoined =
    "This computer isn't paired with an account yet. Ask for a link in your chat, then run: tarnik connect";
inline constexpr Text helperMissing =
    "tarnik's helper isn't there any more. Quit tarnik and start it again; it installs the helper.";
inline constexpr Text notStarted = "The helper couldn't be started. Find out why with: tarnik doctor";
inline constexpr Text homeUnusable = "tarnik can't use the folder for its helper.";

}  // namespace tarnik::ControlTexts
