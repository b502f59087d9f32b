#pragma once

#include <string_view>

// The texts of the window and of the alert; MachineTexts.h has those about this machine. core/ has the texts
// for its own values: the names and the hint of the switches, the failures of installs, and the reasons why a
// link has to wait.
namespace tarnik::WindowTexts {

using Text = std::string_view;

inline constexpr Text product = "tarnik";

// The title of the alert that a program shows if another program uses the node home.
inline constexpr Text alreadyRunning = "tarnik is already running";

// A link for another account.
inline constexpr Text offerHeading = "This Mac is already connected to an tarnik account.";
inline constexpr Text offerText =
    "The link you opened is for connecting a Mac. Connect this Mac to the account that sent it instead? Its "
    "current connection ends. Or keep things as they are.";
inline constexpr Text offerConnect = "Connect to the new account";
inline constexpr Text offerKeep = "Keep the current one";

// A pairing.
inline constexpr Text confirmHeading = "Connect this Mac?";
inline constexpr Text confirmText =
    "Connect only if you asked for this link: tarnik will be able to run commands and work in apps on this "
    "Mac.";
inline constexpr Text readingLink = "Reading the link…";
inline constexpr Text connecting = "Connecting…";
inline constexpr Text pairingConnected = "Connected. You can go back to your chat.";
inline constexpr Text pairingEnded = "That didn't connect. Ask tarnik for a new link and open it again.";
inline constexpr Text connect = "Connect";
inline constexpr Text cancel = "Cancel";
inline constexpr Text done = "Done";

// The link field.
inline constexpr Text linkHeading = "Connect this Mac";
inline constexpr Text linkText =
    "Open the link tarnik sent you in your chat and click “Open in tarnik”, or paste the link here.";
inline constexpr Text linkPathHint = "/…";  // in the field, after the web origin
inline constexpr Text linkContinue = "Continue";
inline constexpr Text paste = "Paste";
inline constexpr Text stepChat = "Your chat";
inline constexpr Text stepLink = "The link";
inline constexpr Text stepConnected = "Connected";

// The switches.
inline constexpr Text switchesHeading = "So tarnik can work in your apps";
inline constexpr Text switchesText =
    "Turn on these two switches for tarnik. It works in the background, in its own windows, and leaves your "
    "cursor alone.";
inline constexpr Text turnOn = "Turn On…";

// The details, which the user can copy into a report.
inline constexpr Text detailsTitle = "Details";
inline constexpr Text detailsCollecting = "tarnik is collecting the details. This can take some seconds.";
inline constexpr Text detailsText =
    "This is what will be copied. Links, keys, addresses and names are hidden. Look through it before you "
    "send it to anybody.";
inline constexpr Text detailsCopied = "The details are copied. You can paste them now.";
inline constexpr Text logNotOpened = "tarnik couldn't open the log.";
inline constexpr Text logPlace =
    "The helper's log is at {path}. It is there as soon as the helper has written something.";
inline constexpr Text copy = "Copy";
inline constexpr Text close = "Close";

// The alert.
inline constexpr Text ok = "OK";

// Read by a screen reader only.
inline constexpr Text computerName = "This computer";
inline constexpr Text stepsName = "The steps: the link in your chat, then tarnik, then connected";
inline constexpr Text pasteName = "Paste the link";
inline constexpr Text linkFieldName = "Link from tarnik";
inline constexpr Text terminalName = "What tarnik's helper says";
inline constexpr Text lastLinesName = "The last lines that tarnik's helper wrote";
inline constexpr Text detailsName = "Details of the report";
inline constexpr Text busyName = "Working";
inline constexpr Text downloadName = "Download";
inline constexpr Text succeededName = "Done";
inline constexpr Text problemName = "Problem";
inline constexpr Text pointerName = "Below";
inline constexpr Text confirmPrompt = "Read what tarnik's helper says, then choose Connect or Cancel.";
inline constexpr Text switchIsOn = "{switch} is on";
inline constexpr Text switchIsOff = "{switch} is off";
inline constexpr Text turnOnSwitch = "Turn on {switch}";

}  // namespace tarnik::WindowTexts
