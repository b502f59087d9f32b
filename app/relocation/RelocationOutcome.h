#pragma once

#include <string>
#include <variant>

namespace tarnik {

namespace RelocationOutcomes {

struct Moving {  // another copy takes over: this one must quit now, and do nothing else
    bool operator==(const Moving&) const = default;
};
struct Stay {
    bool operator==(const Stay&) const = default;
};
struct StayWithMessage {  // the person is told why, once this copy is up
    std::string title;
    std::string body;
    bool operator==(const StayWithMessage&) const = default;
};

}  // namespace RelocationOutcomes

// What a launch goes on with.
using RelocationOutcome =
    std::variant<RelocationOutcomes::Moving, RelocationOutcomes::Stay, RelocationOutcomes::StayWithMessage>;

}  // namespace tarnik
