#include "core/node/NodeLaunch.h"

#include "core/process/Environment.h"
#include "core/process/Spawner.h"

namespace tarnik::NodeLaunch {

std::vector<std::string> runArguments(const NodeHome& home) {
    return {home.entry(), "node", "run", "--parent-stdin"};
}

std::vector<std::string> connectArguments(const NodeHome& home, const std::string& joinURL) {
    return {home.entry(), "connect", joinURL};
}

Environment environment(const Environment& inherited, const NodeHome& home,
                        const std::optional<CuaDriverEndpoint>& endpoint) {
    Environment variables = withoutPrefixes(inherited, droppedPrefixes);
    variables.erase("TARNIK_HOME");
    variables.erase("TARNIK_NODE_RUNTIME");
    if (!home.isDefault) {
        variables["OPENCLAW_STATE_DIR"] = home.path;
        variables["TARNIK_HOME"] = home.path;
    }
    if (const auto value = endpoint ? endpoint->environmentValue() : std::nullopt) {
        variables[std::string(CuaDriverEndpoint::environmentKey)] = *value;
    }
    if (!variables.contains("HOME")) variables["HOME"] = homeDirectory();
    variables.try_emplace("PATH", Spawner::defaultPath);
    return variables;
}

}  // namespace tarnik::NodeLaunch
