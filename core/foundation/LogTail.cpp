#include "core/foundation/LogTail.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {
namespace {

// Returns the last whole lines of one file.
std::string tailOf(const std::string& path, std::size_t maxBytes) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status{};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    const auto wanted = static_cast<off_t>(maxBytes);
    const off_t start = std::max<off_t>(status.st_size - wanted, 0);
    std::string text(static_cast<std::size_t>(status.st_size - start), '\0');
    if (::lseek(file.get(), start, SEEK_SET) != start) return {};
    text.resize(readInto(file, text).value_or(0));
    if (start > 0) text.erase(0, text.find('\n')).erase(0, 1);  // the first line may be incomplete
    return text;
}

}  // namespace

std::string readLogTail(const std::string& path, std::size_t maxBytes) {
    std::string newer = tailOf(path, maxBytes);
    std::string older = tailOf(path + ".1", maxBytes - std::min(newer.size(), maxBytes));
    if (!older.empty() && !older.ends_with('\n')) older += '\n';
    return older + newer;
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
