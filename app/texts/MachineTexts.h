#pragma once

#include <string_view>

// The texts of the window about the state of this machine: its connection and its helper.
namespace tarnik::MachineTexts {

using Text = std::string_view;

// The headings.
inline constexpr Text connected = "This Mac is connected to your tarnik.";
inline constexpr Text reconnecting = "Reconnecting…";
inline constexpr Text gettingReady = "Getting ready…";
inline constexpr Text stopping = "Stopping…";
inline constexpr Text takesSeconds = "This usually takes a few seconds.";
inline constexpr Text stoppingText =
    "tarnik's helper finishes its work first. This usually takes a few seconds, and at most 40.";
inline constexpr Text tryNow = "Try Now";
inline constexpr Text showLog = "Show Log";
inline constexpr Text copyDetails = "Copy Details";

// The facts about a connected machine. The columns are narrow.
inline constexpr Text helperLabel = "Helper";
inline constexpr Text runningSince = "Running since {time}";  // or a date
inline constexpr Text runningSinceVersion = "Running since {time}, version {version}";
inline constexpr Text starting = "Starting…";
inline constexpr Text desktopLabel = "Desktop control";
inline constexpr Text desktopReady = "Ready";
inline constexpr Text desktopNeedsTwo = "Needs two switches";
inline constexpr Text desktopNeedsOne = "Needs one more switch";
inline constexpr Text desktopStopped = "Stopped; turn a switch off and on";
inline constexpr Text desktopAbsent = "Not part of this build";
inline constexpr Text updatesLabel = "Updates";
inline constexpr Text updatesAutomatic = "Installed automatically";
inline constexpr Text updateWaits = "{version} waits for a quiet moment";

// Below the facts.
inline constexpr Text twoSwitchesOff = "Two switches are still off. Turn them on below.";
inline constexpr Text oneSwitchOff = "One switch is still off. Turn on {switch} below.";
inline constexpr Text staysInMenuBar = "You can close this window. tarnik stays in the menu bar.";
inline constexpr Text staysInPanel = "You can close this window. tarnik stays in the panel.";
inline constexpr Text closingEnds = "Closing this window ends the connection.";

// The install of the helper.
inline constexpr Text setupText = "tarnik is setting up its helper. This happens only once.";
inline constexpr Text setupBothSwitches =
    "tarnik is setting up its helper. This happens only once. Meanwhile, you can turn on the two switches "
    "below.";
inline constexpr Text setupOneSwitch =
    "tarnik is setting up its helper. This happens only once. Meanwhile, you can turn on the other switch "
    "below.";
inline constexpr Text setupNext = "Next, you connect this Mac with the link from your chat.";
inline constexpr Text installFailed = "tarnik couldn't install its helper.";
inline constexpr Text helperMissing = "tarnik's helper isn't there any more.";
inline constexpr Text helperMissingText = "It was moved or deleted. Try Again installs it again.";
inline constexpr Text homeUnusable = "tarnik can't use the folder for its helper.";
inline constexpr Text homeUnusableText =
    "Somebody set this folder for tarnik. Remove that setting or set another folder, then quit tarnik and "
    "open "
    "it again. If you don't know the setting, choose Copy Details and send them to the person who helps you.";
inline constexpr Text tryAgain = "Try Again";

}  // namespace tarnik::MachineTexts
