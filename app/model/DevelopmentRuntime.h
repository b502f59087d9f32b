#pragma once

#include <optional>

#include "core/foundation/PropertyList.h"
#include "core/node/NodeRuntime.h"

namespace tarnik {

// The Node.js that an Info.plist names for a platform without a pinned one: that of the developer's machine.
//
// The build picks the source of it. In a release build there is none, whatever the Info.plist holds.
std::optional<NodeRuntime> readDevelopmentRuntime(const PropertyList& info);

}  // namespace tarnik
