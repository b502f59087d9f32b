#pragma once

#include <optional>

#include "app/control/Status.h"
#include "app/policy/PolicyReading.h"

namespace tarnik {

// Returns the part of the status, or std::nullopt if the organisation has set nothing.
std::optional<Status::Managed> policyStatus(const PolicyReading& reading);

}  // namespace tarnik
