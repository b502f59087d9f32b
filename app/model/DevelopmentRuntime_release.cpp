#include "app/model/DevelopmentRuntime.h"

namespace tarnik {

std::optional<NodeRuntime> readDevelopmentRuntime(const PropertyList&) {
    return std::nullopt;
}

}  // namespace tarnik
