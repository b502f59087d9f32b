#include "core/node/NodeRuntime.h"

namespace tarnik::NodeRuntimePin {

const std::map<std::string, Archive, std::less<>>& archives() {
    static const std::map<std::string, Archive, std::less<>> pinned{
        {"darwin-arm64",
         {.file = "node-v24.22.1-darwin-arm64.tar.gz",
          .sha256 = "89c682593d76cd44233fa53b1563264e7de9cbb189cad169135c5b4fadfbc0a7"}},
        {"darwin-x64",
         {.file = "node-v24.22.1-darwin-x64.tar.gz",
          .sha256 = "d132557e7ee2b85af08b0c8c34338e65c6430f2238d01f727728ef42dc83b035"}},
    };
    return pinned;
}

std::optional<NodeRuntime> runtimeFor(const std::string& platform,
                                      const std::optional<NodeRuntime>& ofBuild) {
    const auto& pinned = archives();
    if (const auto row = pinned.find(platform); row != pinned.end()) {
        return NodeRuntime{platform, std::string(version), std::string(distBase), row->second.file,
                           row->second.sha256};
    }
    return ofBuild && ofBuild->platform == platform ? ofBuild : std::nullopt;
}

}  // namespace tarnik::NodeRuntimePin
