#include "app/bundle/BuildKind.h"

namespace tarnik {

bool isDevelopmentBuild() {
    return false;
}

std::optional<NodeRuntime> developmentRuntime(const BundleInfo&) {
    return std::nullopt;
}

}  // namespace tarnik
