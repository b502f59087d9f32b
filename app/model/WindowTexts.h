#pragma once

#include <string_view>

// The window's and the menu's own texts. What the core decides it words itself: the switches' names and hint,
// why an install failed, why a link must wait.
namespace tarnik::WindowTexts {

using Text = std::string_view;

inline constexpr Text product = "tarnik";

// The status item and its menu.
inline constexpr Text productWithoutImage = "tk";
inline constexpr Text openWindow = "Open tarnik";
inline constexpr Text checkForUpdates = "Check for Updates…";
inline constexpr Text quit = "Quit tarnik";

// The program that keeps the node folder already.
inline constexpr Text alreadyRunning = "tarnik is already running";

// A link for another account.
inline constexpr Text offerHeading = "This Mac is already connected to an tarnik account.";
inline constexpr Text offerText =
    "The link you opened is for connecting a Mac. Connect this Mac to the account that sent it instead? Its "
    "current connection ends. Or keep things as they are.";
inline constexpr Text offerConnect = "Connect to the new account";
inline constexpr Text offerKeep = "Keep the current one";

// A pairing.
inline constexpr Text readingLink = "Reading the link…";
inline constexpr Text connecting = "Connecting…";
inline constexpr Text pairingConnected = "Connected. You can go back to your chat.";
inline constexpr Text pairingEnded = "That didn't connect. Ask tarnik for a new link and open it again.";
inline constexpr Text connect = "Connect";
inline constexpr Text cancel = "Cancel";
inline constexpr Text done = "Done";

// How this machine stands.
inline constexpr Text connected = "This Mac is connected to your tarnik.";
inline constexpr Text reconnecting = "Reconnecting…";
inline constexpr Text gettingReady = "Getting ready…";
inline constexpr Text stopping = "Stopping…";
inline constexpr Text installFailed = "tarnik couldn't install its helper.";
inline constexpr Text helperMissing = "tarnik's helper isn't there any more.";
inline constexpr Text homeUnusable = "tarnik can't use the folder for its helper.";
inline constexpr Text tryAgain = "Quit tarnik and open it again to try once more.";

// The link field.
inline constexpr Text linkHeading = "Connect this Mac";
inline constexpr Text linkText =
    "Open the link tarnik sent you in your chat and click “Open in tarnik”, or paste the link here.";
inline constexpr Text linkPathHint = "/…";  // in the field, after where links begin
inline constexpr Text linkContinue = "Continue";

// What is said about a link; the model decides which.
inline constexpr Text checkingLink = "Checking the link…";
inline constexpr Text notALink =
    "That doesn't look like a link from tarnik. Copy the whole link from your chat and paste it here.";
inline constexpr Text stillInstalling = "tarnik's helper is still installing. Try again in a moment.";
inline constexpr Text linkExpired = "This link has expired or was already used. Ask tarnik for a new one.";

// Failures whose own words are the system's; these come first.
inline constexpr Text tooBusy = "This computer is too busy right now. Close some programs and try again.";
inline constexpr Text diskFull = "The disk is full. Make room on it and try again.";
inline constexpr Text notAllowed =
    "tarnik isn't allowed to use a file or folder that it needs. Change who may use it and try again.";
inline constexpr Text fileFailed =
    "tarnik couldn't use a file or folder that it needs. Look whether something else is in its place.";
inline constexpr Text programFailed =
    "tarnik couldn't start a program that it needs. Look whether that is installed.";
inline constexpr Text downloadFailed =
    "tarnik couldn't download its helper. Check your connection and try again.";
inline constexpr Text unpackFailed =
    "What tarnik downloaded is damaged, or the disk is full. Make room on it and try again.";
inline constexpr Text releaseRefused =
    "tarnik can't be sure that its helper is genuine, so nothing was installed. Try again later.";

// The switches.
inline constexpr Text switchesHeading = "So tarnik can work in your apps";
inline constexpr Text switchesText =
    "Turn on these two switches for tarnik. It works in the background, in its own windows, and leaves your "
    "cursor alone.";
inline constexpr Text turnOn = "Turn On…";

// The alert.
inline constexpr Text ok = "OK";

// Said by a screen reader only.
inline constexpr Text linkFieldName = "Link from tarnik";
inline constexpr Text terminalName = "What tarnik's helper says";
inline constexpr Text busyName = "Working";
inline constexpr Text downloadName = "Download";
inline constexpr Text succeededName = "Done";
inline constexpr Text problemName = "Problem";
inline constexpr Text confirmPrompt = "Read what tarnik's helper says, then choose Connect or Cancel.";
inline constexpr Text switchIsOn = " is on";  // after its title
inline constexpr Text switchIsOff = " is off";
inline constexpr Text turnOnSwitch = "Turn on ";  // before its title

}  // namespace tarnik::WindowTexts
