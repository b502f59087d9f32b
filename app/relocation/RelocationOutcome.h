#pragma once

#include <string>
#include <variant>

namespace tarnik {

namespace RelocationOutcomes {

struct Moving {  // another copy replaces this one; this copy must quit now
    bool operator==(const Moving&) const = default;
};
struct Stay {  // this copy continues
    bool operator==(const Stay&) const = default;
};
struct StayWithMessage {  // this copy continues; an alert shows the message after the launch
    std::string title;
    std::string body;
    bool operator==(const StayWithMessage&) const = default;
};

}  // namespace RelocationOutcomes

// States whether the launch of this copy continues.
using RelocationOutcome =
    std::variant<RelocationOutcomes::Moving, RelocationOutcomes::Stay, RelocationOutcomes::StayWithMessage>;

}  // namespace tarnik
