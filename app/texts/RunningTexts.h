#pragma once

// The texts of the commands that use the running program.
namespace tarnik::RunningTexts {

using Text = const char*;

inline constexpr Text notRunning =
    "it isn't running; start it with: tarnik (or without a window: tarnik serve)";
inline constexpr Text timedOut = "the running tarnik doesn't answer";
inline constexpr Text ended = "the running tarnik has ended";
inline constexpr Text malformed = "the running tarnik is of another version; quit it and start it again";

inline constexpr Text restarted = "The helper was restarted.";
inline constexpr Text quitting = "tarnik is quitting.";
inline constexpr Text hasQuit = "tarnik has quit.";
inline constexpr Text stillRuns = "tarnik hasn't quit yet";

inline constexpr Text pasteLink = "Paste the link from your chat: ";
inline constexpr Text noLink = "there is no link; pass it as an argument, or on standard input";
inline constexpr Text checkingLink = "Checking the link…";
inline constexpr Text pressEnter = "Press Enter to connect, or Ctrl-C to cancel.";
inline constexpr Text notConfirmed = "the input ended before you confirmed the pairing, so it was cancelled";
inline constexpr Text cantAsk = "nobody can be asked here; add --yes to connect without a question";
inline constexpr Text connecting = "Connecting…";

}  // namespace tarnik::RunningTexts
