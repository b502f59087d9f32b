#include "app/relocation/RelocationRecord.h"

#include <cstdio>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/TarnikIdentity.h"

namespace tarnik {

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;
constexpr mode_t permissionBits = 07777;
constexpr const char* fileName = "relocation.log";
constexpr const char* newFileName = "relocation.log.new";

using Status = struct stat;

std::optional<Status> statusOf(const UniqueFd& opened) {
    Status found{};
    if (!opened || ::fstat(opened.get(), &found) != 0) return std::nullopt;
    return found;
}

// Whether it is ours, and now private.
bool makePrivate(const UniqueFd& opened, const Status& status, mode_t mode) {
    if (status.st_uid != ::geteuid()) return false;
    return (status.st_mode & permissionBits) == mode || ::fchmod(opened.get(), mode) == 0;
}

UniqueFd openFolder(const std::string& path) {
    UniqueFd folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const auto status = statusOf(folder);
    return status && makePrivate(folder, *status, folderMode) ? std::move(folder) : UniqueFd();
}

// A regular file of ours, made where there is none. A pipe in its place must not make us wait.
UniqueFd openFile(const UniqueFd& folder, const char* name, int flags) {
    constexpr int always = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    UniqueFd file(::openat(folder.get(), name, always | flags, fileMode));
    const auto status = statusOf(file);
    const bool usable = status && S_ISREG(status->st_mode) && makePrivate(file, *status, fileMode);
    return usable ? std::move(file) : UniqueFd();
}

// The last whole lines of the file, at most half the cap of them.
std::string newestHalf(const UniqueFd& file, off_t size) {
    constexpr std::size_t half = RelocationRecord::capBytes / 2;
    std::string bytes(half, '\0');
    const ssize_t count = ::pread(file.get(), bytes.data(), bytes.size(), size - static_cast<off_t>(half));
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    const auto end = bytes.find('\n');
    return end == std::string::npos ? std::string() : bytes.substr(end + 1);
}

}  // namespace

RelocationRecord::RelocationRecord(const std::string& applicationSupport)
    : folder_(applicationSupport + "/" + std::string(TarnikIdentity::appName)) {}

void RelocationRecord::append(std::string_view line) const {
    if (line.size() >= capBytes / 2) return;
    if (!createFolders(folder_, folderMode)) return;
    const UniqueFd folder = openFolder(folder_);
    if (!folder) return;
    const UniqueFd file = openFile(folder, fileName, O_APPEND);
    const auto status = statusOf(file);
    if (!status) return;

    std::string text(line);
    text += '\n';
    if (static_cast<std::size_t>(status->st_size) + text.size() <= capBytes) {
        writeAll(file, text);
        return;
    }
    const UniqueFd shorter = openFile(folder, newFileName, O_TRUNC);
    if (shorter && writeAll(shorter, newestHalf(file, status->st_size) + text))
        ::renameat(folder.get(), newFileName, folder.get(), fileName);
}

}  // namespace tarnik
