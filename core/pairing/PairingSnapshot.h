#pragma once

#include <cstdint>
#include <string>

#include "core/pairing/PairingPhase.h"

namespace tarnik {

// A pairing session at one moment, as the window and the console show it.
struct PairingSnapshot {
    std::string sessionID;
    PairingPhase phase;
    std::string text;             // cleaned of escape sequences; from outside, so shown as plain text only
    std::uint64_t textStart = 0;  // the number of bytes of such text that were cut off before it

    bool operator==(const PairingSnapshot&) const = default;
};

}  // namespace tarnik
