#include "core/foundation/LogTail.h"

#include "core/foundation/LogFollower.h"

namespace tarnik {

std::string readLogTail(const std::string& path, std::size_t maxBytes) {
    return LogFollower(path).tail(maxBytes);
}

std::string_view lastLines(std::string_view text, std::size_t count) {
    std::size_t start = text.ends_with('\n') ? text.size() - 1 : text.size();
    if (count == 0 || text.empty()) return {};
    for (; count > 0; --count) {
        const auto lineFeed = start > 0 ? text.rfind('\n', start - 1) : text.npos;
        if (lineFeed == text.npos) return text;
        start = lineFeed;
    }
    return text.substr(start + 1);
}

}  // namespace tarnik
