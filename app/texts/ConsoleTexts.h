#pragma once

#include <array>

// The hints, answers and errors of the console.
namespace tarnik::ConsoleTexts {

using Text = const char*;

// One line for each command or group of commands.
inline constexpr std::array helpLines{
    "a link from your chat: pair this computer",
    "confirm, or an empty line: answer the pairing prompt; cancel: end the pairing",
    "replace, keep: answer the offer to connect to another account",
    "done: dismiss the result of a pairing",
    "window: print what the window shows; updates: check for updates",
    "switch accessibility|screen on|off: set a simulated privacy switch",
    "request accessibility|screen: print the prompt of the system for a switch",
    "status: print the state; sample: print the activity",
    "quit: stop the helper and end",
};

inline constexpr Text pasteLink = "Paste the link from your chat here.";
inline constexpr Text answerOffer =
    "Type replace to connect to the new account, keep to stay with the current one.";
inline constexpr Text answerPrompt = "Press Enter here to connect, or type cancel.";

inline constexpr Text runConnect = "Run tarnik connect to connect this computer.";

inline constexpr Text noOffer = "no offer waits for an answer";
inline constexpr Text nothingToConfirm = "no pairing waits for a confirmation";
inline constexpr Text noPairing = "no pairing is in progress";
inline constexpr Text lineTooLong = "the line is too long";
inline constexpr Text switchUsage = "usage: switch accessibility|screen on|off";

}  // namespace tarnik::ConsoleTexts
