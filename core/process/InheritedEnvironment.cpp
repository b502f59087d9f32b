#include "core/process/InheritedEnvironment.h"

#include <algorithm>

namespace tarnik {

Environment withoutPrefixes(Environment environment, std::span<const std::string_view> prefixes) {
    std::erase_if(environment, [prefixes](const auto& variable) {
        return std::ranges::any_of(prefixes, [&](auto prefix) { return variable.first.starts_with(prefix); });
    });
    return environment;
}

}  // namespace tarnik
