#pragma once

#include <optional>
#include <string_view>

namespace tarnik {

// The kinds of events in the journal.
enum class EventCode {
    programStarted,
    programEnded,
    programSecondStart,  // a second start passed its request to this program
    programAnotherCopy,  // another program uses the node home, so this one ends
    programRelocation,
    programWarning,  // a part of the program doesn't work here
    homeUnusable,
    installBegun,
    installStep,
    installRefused,
    installDone,
    helperStarted,
    helperStartFailed,
    helperEnded,    // on its own
    helperStopped,  // by this program
    helperRestart,  // planned
    helperWaiting,  // for a link
    helperMissing,
    driverStarted,
    driverStartFailed,
    driverEnded,
    driverStopped,
    driverRestart,
    driverGivenUp,  // until a switch changes
    endpointPublished,
    endpointWithdrawn,
    pairingOffered,  // a link that would replace the account
    pairingBegun,
    pairingRefused,
    pairingPrompted,
    pairingConfirmed,
    pairingConnected,
    pairingEnded,
    pairingCancelled,
    switchesChanged,
    updateWaiting,
    updateInstalled,
};

// Returns the stable name of the code: "helper.ended". Names never change between versions.
std::string_view nameOf(EventCode code);

// Returns std::nullopt for a name of another version.
std::optional<EventCode> eventCodeOf(std::string_view name);

}  // namespace tarnik
