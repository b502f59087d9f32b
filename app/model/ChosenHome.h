#pragma once

#include <expected>
#include <string>

#include "app/platform/UserDefaults.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Returns the node home that the preferences name, or the default node home below the user's home folder.
std::expected<NodeHome, NodeHome::ResolveError> chosenHome(const UserDefaults& defaults,
                                                           const std::string& userFolder);

}  // namespace tarnik
