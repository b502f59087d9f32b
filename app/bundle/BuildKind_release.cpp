#include "app/bundle/BuildKind.h"

namespace tarnik {

bool isDevelopmentBuild() {
    return false;
}

std::optional<std::string> developmentPolicyFolder(const Environment&) {
    return std::nullopt;
}

}  // namespace tarnik
