#pragma once

#include <span>
#include <string_view>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// The environment without the variables whose names begin with one of `prefixes`: what was meant for
// ourselves, and must not steer a child.
Environment withoutPrefixes(Environment environment, std::span<const std::string_view> prefixes);

}  // namespace tarnik
