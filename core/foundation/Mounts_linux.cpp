#include "core/foundation/Mounts.h"

#include "core/foundation/Files.h"

namespace tarnik {

std::optional<std::vector<std::string>> mountPoints() {
    constexpr std::size_t longestTable = 4'194'304;
    const auto table = readFile("/proc/self/mountinfo", longestTable);
    if (!table) return std::nullopt;
    return parseMountInfo(*table);
}

}  // namespace tarnik
