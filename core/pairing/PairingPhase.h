#pragma once

#include <string>
#include <variant>

#include "core/process/ExitStatus.h"

namespace tarnik {

namespace PairingPhases {

struct Ended {  // the command ended and this Mac is not connected
    ExitStatus status;
    bool operator==(const Ended&) const = default;
};
struct Starting {  // the command runs and has not shown its prompt
    bool operator==(const Starting&) const = default;
};
struct WaitingForYes {  // the prompt is there; the person is asked
    bool operator==(const WaitingForYes&) const = default;
};
struct Connecting {  // the person said yes, Enter was pressed
    bool operator==(const Connecting&) const = default;
};
struct Connected {
    bool operator==(const Connected&) const = default;
};

}  // namespace PairingPhases

// How far a pairing attempt has come.
using PairingPhase = std::variant<PairingPhases::Ended, PairingPhases::Starting, PairingPhases::WaitingForYes,
                                  PairingPhases::Connecting, PairingPhases::Connected>;

// Starting, WaitingForYes or Connecting.
bool isInProgress(const PairingPhase& phase);

// "waitingForYes", "ended (exit 1)"
std::string describe(const PairingPhase& phase);

}  // namespace tarnik
