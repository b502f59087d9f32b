#include <utility>

#include "app/bundle/BuildKind.h"

namespace tarnik {

bool isDevelopmentBuild() {
    return true;
}

std::optional<NodeRuntime> developmentRuntime(const BundleInfo& info) {
    auto platform = info.text("TKDevRuntimePlatform");
    auto version = info.text("TKDevRuntimeVersion");
    auto base = info.text("TKDevRuntimeBase");
    auto file = info.text("TKDevRuntimeFile");
    auto sha256 = info.text("TKDevRuntimeSHA256");
    if (!platform || !version || !base || !file || !sha256) return std::nullopt;
    return NodeRuntime{.platform = *std::move(platform),
                       .version = *std::move(version),
                       .base = *std::move(base),
                       .file = *std::move(file),
                       .sha256 = *std::move(sha256)};
}

}  // namespace tarnik
