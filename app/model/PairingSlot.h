#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace tarnik {

// Counts the links that were accepted, so that a late answer to one is told from that to the next.
using PairingAttempt = std::uint64_t;

namespace PairingSlots {

struct None {
    bool operator==(const None&) const = default;
};
struct Starting {  // a link was accepted and is checked; it has no session yet
    PairingAttempt attempt;
    bool operator==(const Starting&) const = default;
};
struct Active {
    PairingAttempt attempt;
    std::string sessionID;
    bool operator==(const Active&) const = default;
};

}  // namespace PairingSlots

// Sees to it that only one link is worked on at a time.
using PairingSlot = std::variant<PairingSlots::None, PairingSlots::Starting, PairingSlots::Active>;

}  // namespace tarnik
