#include "app/platform/linux/OwnPicture.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/Paths.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {
namespace {

constexpr std::time_t longestAgo = 600;

// The folder with its links followed, open; none when it isn't below one of `folders`.
UniqueFd openFolder(const std::string& path, const std::vector<std::string>& folders) {
    const auto folder = realPath(path);
    const bool isBelow = folder && std::ranges::any_of(folders, [&](const std::string& other) {
                             const auto top = realPath(other);
                             return top && (*folder + "/").starts_with(*top + "/");
                         });
    return isBelow ? UniqueFd(::open(folder->c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC))
                   : UniqueFd();
}

}  // namespace

void removeScreenshot(const std::string& path, const std::vector<std::string>& folders) {
    const std::string plain = standardize(path);
    const UniqueFd folder = openFolder(parentFolder(plain), folders);
    const std::string name = plain.substr(plain.rfind('/') + 1);
    struct stat found{};
    if (!folder || ::fstatat(folder.get(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) return;
    const bool isOurs = S_ISREG(found.st_mode) && found.st_uid == ::getuid() && found.st_nlink == 1;
    const bool isFresh = std::abs(std::time(nullptr) - found.st_mtime) <= longestAgo;
    if (isOurs && isFresh) ::unlinkat(folder.get(), name.c_str(), 0);
}

}  // namespace tarnik
