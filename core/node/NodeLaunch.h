#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/driver/CuaDriverEndpoint.h"
#include "core/node/NodeHome.h"
#include "core/process/SpawnRequest.h"

// How the helper node is started: the arguments and the environment for the runtime, home.nodeBinary().
namespace tarnik::NodeLaunch {

// Inherited variables whose names begin so never reach the node.
inline constexpr std::array<std::string_view, 3> droppedPrefixes{"OPENCLAW_", "CF_ACCESS_", "CUA_DRIVER_"};

// The normal mode. The node leaves at the end of its standard input, which we hold open.
std::vector<std::string> runArguments(const NodeHome& home);

// The pairing mode; the link is passed on as it is.
std::vector<std::string> connectArguments(const NodeHome& home, const std::string& joinURL);

// The node's whole environment, from our own. The driver's endpoint is the given one or none at all.
Environment environment(const Environment& inherited, const NodeHome& home,
                        const std::optional<CuaDriverEndpoint>& endpoint);

}  // namespace tarnik::NodeLaunch
