#pragma once

// The words of `tarnik status`.
namespace tarnik::StatusTexts {

using Text = const char*;

inline constexpr Text notRunning = "tarnik isn't running.";
inline constexpr Text joined = "This computer is paired with an account. Start tarnik to connect it.";
inline constexpr Text notJoined =
    "This computer isn't paired with an account. Start tarnik, then run: tarnik connect";
inline constexpr Text seeDoctor = "To find out more, run: tarnik doctor";
inline constexpr Text noAccount =
    "This computer isn't connected. Ask for a link in your chat, then run: tarnik connect";
inline constexpr Text promptWaits = "tarnik's helper waits for your confirmation.";

// The labels of the rows.
inline constexpr Text program = "Program";
inline constexpr Text helper = "Helper";
inline constexpr Text driver = "Desktop driver";
inline constexpr Text switches = "Switches";
inline constexpr Text update = "Update";
inline constexpr Text install = "Install";
inline constexpr Text folders = "Folders";
inline constexpr Text policy = "Organisation";

// The states.
inline constexpr Text helperRunning = "running";
inline constexpr Text helperRestarting = "restarting";
inline constexpr Text helperPairing = "pairing";
inline constexpr Text helperWaits = "waits for a link";
inline constexpr Text helperMissing = "not installed";
inline constexpr Text stopped = "not running";
inline constexpr Text driverReady = "ready";
inline constexpr Text driverStarting = "starting";
inline constexpr Text driverOff = "off until both switches are on";
inline constexpr Text driverAbsent = "not part of this build";
inline constexpr Text switchOn = " on";
inline constexpr Text switchOff = " off";
inline constexpr Text switchStale = " off, although the settings may show it on";
inline constexpr Text switchesUnknown = "unknown while tarnik isn't running";
inline constexpr Text updatesElsewhere = "the system installs updates";
inline constexpr Text noUpdate = "none is waiting";
inline constexpr Text updateWaits = " is installed at the first quiet moment";  // after the version
inline constexpr Text installing = "the helper is being installed";
inline constexpr Text installed = "the helper is installed";
inline constexpr Text installMissing = "the helper isn't installed";
inline constexpr Text installFailed = "failed: ";

// The details.
inline constexpr Text version = "version ";
inline constexpr Text process = "process ";
inline constexpr Text withWindow = "with a window";
inline constexpr Text inTerminal = "in a terminal";
inline constexpr Text asService = "without a window";
inline constexpr Text runningFor = "for ";
inline constexpr Text lastExit = "last exit: ";
inline constexpr Text after = " after ";
inline constexpr Text ago = " ago";
inline constexpr Text isForced = " (forced)";
inline constexpr Text isDefault = " (default)";
inline constexpr Text home = "helper  ";
inline constexpr Text data = "data    ";
inline constexpr Text logs = "logs    ";
inline constexpr Text socket = "socket  ";

}  // namespace tarnik::StatusTexts
