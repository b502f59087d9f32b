#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "core/process/ExitStatus.h"

namespace tarnik {

namespace PairingPhases {

struct Ended {  // the command has ended, and this machine is not connected
    ExitStatus status;
    bool operator==(const Ended&) const = default;
};
struct Starting {  // the command runs and has not printed its prompt yet
    bool operator==(const Starting&) const = default;
};
struct WaitingForYes {  // the prompt is printed, and the user is asked to confirm
    bool operator==(const WaitingForYes&) const = default;
};
struct Connecting {  // the user has confirmed, and Enter is typed
    bool operator==(const Connecting&) const = default;
};
struct Connected {  // the command ran long enough after Enter, or this machine joined before a cancel
    bool operator==(const Connected&) const = default;
};

}  // namespace PairingPhases

// The progress of a pairing session.
using PairingPhase = std::variant<PairingPhases::Ended, PairingPhases::Starting, PairingPhases::WaitingForYes,
                                  PairingPhases::Connecting, PairingPhases::Connected>;

// Returns true for Starting, WaitingForYes and Connecting.
bool isInProgress(const PairingPhase& phase);

// Returns a short text for logs, such as "waitingForYes" or "ended (exit 1)".
std::string describe(const PairingPhase& phase);

// A pairing session at one moment, as the window and the console show it.
struct PairingSnapshot {
    std::string sessionID;
    PairingPhase phase;
    std::string text;             // terminal output without escape sequences; untrusted, show as plain text
    std::uint64_t textStart = 0;  // the number of bytes that were cut off before `text`
    std::string displayText;      // the end of the output; a carriage return starts its line anew

    bool operator==(const PairingSnapshot&) const = default;
};

}  // namespace tarnik
