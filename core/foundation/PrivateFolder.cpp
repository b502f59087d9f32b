#include "core/foundation/PrivateFolder.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/Files.h"

namespace tarnik {

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;
constexpr mode_t permissionBits = 07777;

// Sets the mode of the open entry. Returns false if that fails, or if the entry has another type or belongs
// to another user.
bool makePrivate(const UniqueFd& opened, mode_t type, mode_t mode) {
    struct stat found{};
    if (!opened || ::fstat(opened.get(), &found) != 0) return false;
    if ((found.st_mode & S_IFMT) != type || found.st_uid != ::geteuid()) return false;
    return (found.st_mode & permissionBits) == mode || ::fchmod(opened.get(), mode) == 0;
}

}  // namespace

std::optional<PrivateFolder> PrivateFolder::open(const std::string& path) {
    if (!createFolders(path, folderMode)) return std::nullopt;
    UniqueFd folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!makePrivate(folder, S_IFDIR, folderMode)) return std::nullopt;
    return PrivateFolder(std::move(folder));
}

UniqueFd PrivateFolder::openFile(const std::string& name, int flags) const {
    constexpr int always = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    UniqueFd file(::openat(folder_.get(), name.c_str(), always | flags, fileMode));
    return makePrivate(file, S_IFREG, fileMode) ? std::move(file) : UniqueFd();
}

std::optional<std::string> PrivateFolder::read(const std::string& name, std::size_t maxBytes) const {
    const UniqueFd file = openFile(name, 0);
    if (!file) return std::nullopt;
    return readRest(file, maxBytes);
}

bool PrivateFolder::replace(const std::string& name, std::string_view bytes) const {
    const std::string newName = name + ".new";
    const UniqueFd file = openFile(newName, O_CREAT | O_TRUNC);
    return file && writeAll(file.get(), bytes) == bytes.size() &&
           ::renameat(folder_.get(), newName.c_str(), folder_.get(), name.c_str()) == 0;
}

void PrivateFolder::remove(const std::string& name) const {
    ::unlinkat(folder_.get(), name.c_str(), 0);
}

}  // namespace tarnik
