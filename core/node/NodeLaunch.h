#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/driver/CuaDriverEndpoint.h"
#include "core/node/NodeHome.h"
#include "core/process/SpawnRequest.h"

// The arguments and the environment of the helper node. The program is the runtime, home.nodeBinary().
namespace tarnik::NodeLaunch {

// Inherited variables with these prefixes never reach the node.
inline constexpr std::array<std::string_view, 3> droppedPrefixes{"OPENCLAW_", "CF_ACCESS_", "CUA_DRIVER_"};

// The normal mode. The node quits at the end of its standard input, which we hold open.
std::vector<std::string> runArguments(const NodeHome& home);

// The pairing mode. The link is passed unchanged.
std::vector<std::string> connectArguments(const NodeHome& home, const std::string& joinURL);

// Returns the node's whole environment, made from ours. Without an endpoint its variable is absent.
Environment environment(const Environment& inherited, const NodeHome& home,
                        const std::optional<CuaDriverEndpoint>& endpoint);

}  // namespace tarnik::NodeLaunch
