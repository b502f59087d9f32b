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

// Inherited variables with these prefixes are not passed to the node.
inline constexpr std::array<std::string_view, 3> droppedPrefixes{"OPENCLAW_", "CF_ACCESS_", "CUA_DRIVER_"};

// Returns the arguments of the normal mode, in which the node quits when its standard input ends.
std::vector<std::string> runArguments(const NodeHome& home);

// Returns the arguments of the connect command. The address is passed unchanged.
std::vector<std::string> connectArguments(const NodeHome& home, const std::string& joinURL);

// Returns the node's whole environment, derived from `inherited`. Contains the endpoint's variable only if
// `endpoint` is set and valid.
Environment environment(const Environment& inherited, const NodeHome& home,
                        const std::optional<CuaDriverEndpoint>& endpoint);

}  // namespace tarnik::NodeLaunch
