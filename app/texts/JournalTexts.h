#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/foundation/Time.h"
#include "core/process/ExitStatus.h"
#include "core/switches/SwitchSnapshot.h"

// The sentences of the events in the journal.
namespace tarnik::JournalTexts {

using Text = const char*;

inline constexpr Text helper = "The helper";
inline constexpr Text driver = "The desktop driver";

inline constexpr Text secondStart = "tarnik was started again, and the second start ended.";
inline constexpr Text moved = "Another copy of tarnik continues in place of this one, which ends.";
inline constexpr Text installBegun = "The installation of the helper began.";
inline constexpr Text installDone = "The helper was installed.";
inline constexpr Text helperWaiting = "The helper waits for a link.";
inline constexpr Text helperMissing = "The helper's files are missing.";
inline constexpr Text driverGivenUp = "The desktop driver is not started again until a switch changes.";
inline constexpr Text endpointPublished = "The desktop driver is ready, and the helper may use it.";
inline constexpr Text endpointWithdrawn = "The helper may no longer use the desktop driver.";
inline constexpr Text pairingOffered = "A link for another account waits for an answer.";
inline constexpr Text pairingDeclined = "The link for another account was dropped.";
inline constexpr Text pairingBegun = "A link is being checked.";
inline constexpr Text pairingPrompted = "The helper waits for a confirmation.";
inline constexpr Text pairingConfirmed = "The pairing was confirmed.";
inline constexpr Text pairingConnected = "The pairing has connected this computer.";
inline constexpr Text pairingCancelled = "The pairing was cancelled.";

std::string programStarted(std::string_view version, int pid);
std::string programEnded(int exitStatus);
std::string programWarning(std::string line);  // of the log
std::string relocationMessage(const std::string& title);
std::string installRefused(const std::string& reason);
std::string pairingRefused(const std::string& reason);
std::string pairingEnded(const ExitStatus& status);
std::string switches(const SwitchSnapshot& switches);
std::string updateWaiting(const std::string& version);
std::string updateInstalled(const std::string& version);

// Return the sentences about a child. `child` is `helper` or `driver`.
std::string started(Text child, int pid, const std::optional<std::string>& version);
std::string startFailed(Text child, const std::string& reason);
std::string ended(Text child, const ExitStatus& status, std::optional<Seconds> ranFor);
std::string stopped(Text child, std::optional<Seconds> ranFor);
std::string restart(Text child, Seconds delay);

}  // namespace tarnik::JournalTexts
