#include "app/bundle/BuildKind.h"

namespace tarnik {

bool isDevelopmentBuild() {
    return true;
}

std::optional<std::string> developmentPolicyFolder(const Environment& environment) {
    auto folder = environmentValue(environment, "TARNIK_POLICY_FOLDER");
    return folder.starts_with('/') ? std::optional(std::move(folder)) : std::nullopt;
}

}  // namespace tarnik
