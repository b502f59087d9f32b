#include "app/control/PolicyStatus.h"

namespace tarnik {

std::optional<Status::Managed> policyStatus(const PolicyReading& reading) {
    if (reading == PolicyReading()) return std::nullopt;
    auto state = reading.policy == Policy() ? PolicyState::ignored : PolicyState::inForce;
    if (reading.damage) state = PolicyState::damaged;
    const auto sentence = reading.warnings();
    return Status::Managed{.state = std::string(state),
                           .sentence = sentence.empty() ? std::nullopt : std::optional(sentence),
                           .settings = reading.policy.entries()};
}

}  // namespace tarnik
