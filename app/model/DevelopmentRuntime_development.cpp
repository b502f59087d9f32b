#include "app/model/DevelopmentRuntime.h"
#include "app/model/InfoText.h"

namespace tarnik {

std::optional<NodeRuntime> readDevelopmentRuntime(const PropertyList& info) {
    auto platform = infoText(info, "TKDevRuntimePlatform");
    auto version = infoText(info, "TKDevRuntimeVersion");
    auto base = infoText(info, "TKDevRuntimeBase");
    auto file = infoText(info, "TKDevRuntimeFile");
    auto sha256 = infoText(info, "TKDevRuntimeSHA256");
    if (!platform || !version || !base || !file || !sha256) return std::nullopt;
    return NodeRuntime{.platform = *std::move(platform),
                       .version = *std::move(version),
                       .base = *std::move(base),
                       .file = *std::move(file),
                       .sha256 = *std::move(sha256)};
}

}  // namespace tarnik
