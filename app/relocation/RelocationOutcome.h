#pragma once

#include <string>
#include <variant>

namespace tarnik {

namespace RelocationOutcomes {

struct Moving {  // another copy replaces this one, which must quit now and do nothing else
    bool operator==(const Moving&) const = default;
};
struct Stay {  // this copy continues
    bool operator==(const Stay&) const = default;
};
struct StayWithMessage {  // shown in an alert after the launch
    std::string title;
    std::string body;
    bool operator==(const StayWithMessage&) const = default;
};

}  // namespace RelocationOutcomes

// Whether the launch of this copy continues.
using RelocationOutcome =
    std::variant<RelocationOutcomes::Moving, RelocationOutcomes::Stay, RelocationOutcomes::StayWithMessage>;

}  // namespace tarnik
