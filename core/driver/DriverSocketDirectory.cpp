#include "core/driver/DriverSocketDirectory.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <memory>
#include <string_view>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "core/driver/SearchFolder.h"
#include "core/foundation/DirectoryReader.h"
#include "core/foundation/Encoding.h"
#include "core/foundation/Paths.h"
#include "core/foundation/TextCleanup.h"
#include "core/foundation/UniqueFd.h"
#include "core/foundation/Uuid.h"

namespace tarnik {

namespace {

using Failure = DriverSocketDirectory::Failure;
using Status = struct stat;

constexpr mode_t folderMode = 0700;
constexpr mode_t pidFileMode = 0600;
constexpr mode_t permissionBits = 07777;
constexpr std::size_t idLength = 16;
constexpr int idAttempts = 8;
constexpr std::size_t socketPathLimit = 104;  // Darwin's limit with the final NUL; Linux's is higher
constexpr std::size_t pidFileLimit = 64;
constexpr const char* socketName = "cua.sock";
constexpr const char* pidFileName = "cua.pid";

std::unexpected<Failure> refused(const char* reason) {
    return std::unexpected(Failure{.kind = Failure::Kind::directory, .reason = reason});
}

// Does not follow a link.
std::optional<Status> statusAt(int folder, const std::string& name) {
    Status found{};
    if (::fstatat(folder, name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
    return found;
}

std::optional<Status> statusOf(const UniqueFd& opened) {
    Status found{};
    if (!opened || ::fstat(opened.get(), &found) != 0) return std::nullopt;
    return found;
}

bool isOurs(const Status& status) {
    return status.st_uid == ::geteuid();
}

bool isOurPrivateFolder(const Status& status) {
    return S_ISDIR(status.st_mode) && isOurs(status) && (status.st_mode & permissionBits) == folderMode;
}

bool isUnchanged(const DriverSocketDirectory& directory, const std::optional<Status>& status) {
    return status && isOurPrivateFolder(*status) && status->st_dev == directory.device &&
           status->st_ino == directory.inode;
}

UniqueFd openFolder(int at, const std::string& name) {
    return UniqueFd(::openat(at, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

// Makes a folder with exactly folderMode, whatever the umask and the parent folder's mode are. Sets errno on
// failure.
bool makeFolder(int at, const std::string& name) {
    if (::mkdirat(at, name.c_str(), folderMode) != 0) return false;
    if (::fchmodat(at, name.c_str(), folderMode, AT_SYMLINK_NOFOLLOW) == 0) return true;
    const int code = errno;
    ::unlinkat(at, name.c_str(), AT_REMOVEDIR);
    errno = code;
    return false;
}

enum class WhenMissing { make, leave };

// Opens the parent of the private folders for lookups. Returns an empty UniqueFd if one of the three folders
// on the way can't be opened or isn't ours. Their modes are not checked, and they need not be readable.
UniqueFd openRoots(const std::string& applicationSupport, WhenMissing whenMissing) {
    UniqueFd folder;
    int above = AT_FDCWD;
    for (const std::string& name : {applicationSupport, std::string("tarnik"), std::string("cua")}) {
        UniqueFd next = openForSearch(above, name);
        if (!next && errno == ENOENT && whenMissing == WhenMissing::make) {
            if (!makeFolder(above, name) && errno != EEXIST) return {};
            next = openForSearch(above, name);
        }
        const auto status = statusOf(next);
        if (!status || !isOurs(*status)) return {};
        folder = std::move(next);
        above = folder.get();
    }
    return folder;
}

// Removes trailing slashes, because a link with a trailing slash would be followed.
std::string withoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path;
}

DriverSocketDirectory record(const std::string& applicationSupport, const std::string& id,
                             const Status& status) {
    const std::string path = applicationSupport + "/tarnik/cua/" + id;
    return {
        .path = path, .socketPath = path + "/" + socketName, .device = status.st_dev, .inode = status.st_ino};
}

std::string randomID() {
    std::string id = randomUuid();
    std::erase(id, '-');
    return id.substr(0, idLength);
}

bool isID(std::string_view name) {
    return name.size() == idLength && isHex(name);
}

// Makes a folder with a random name. Returns the name, or std::nullopt on failure.
std::optional<std::string> makeUniqueFolder(const UniqueFd& root) {
    for (int attempt = 0; attempt < idAttempts; ++attempt) {
        std::string id = randomID();
        if (makeFolder(root.get(), id)) return id;
        if (errno != EEXIST) return std::nullopt;
    }
    return std::nullopt;
}

std::expected<DriverSocketDirectory, Failure> inspectNew(const UniqueFd& root,
                                                         const std::string& applicationSupport,
                                                         const std::string& id) {
    const UniqueFd folder = openFolder(root.get(), id);
    const auto status = statusOf(folder);
    if (!status || !isOurPrivateFolder(*status)) {
        return refused("the new directory failed its ownership checks");
    }
    auto made = record(applicationSupport, id, *status);
    if (made.socketPath.size() >= socketPathLimit) {
        return std::unexpected(Failure{.kind = Failure::Kind::socketPathTooLong, .reason = {}});
    }
    if (statusAt(folder.get(), socketName) || errno != ENOENT) return refused("socket path already exists");
    return made;
}

// Opens the folder. Returns an empty UniqueFd if the folder was replaced or can't be opened.
UniqueFd openUnchanged(const DriverSocketDirectory& directory) {
    UniqueFd folder = openFolder(AT_FDCWD, directory.path);
    if (!isUnchanged(directory, statusOf(folder))) return {};
    return folder;
}

void removeOurs(const UniqueFd& folder, const char* name) {
    const auto status = statusAt(folder.get(), name);
    if (status && isOurs(*status)) ::unlinkat(folder.get(), name, 0);
}

std::optional<pid_t> parsePid(std::string_view text) {
    text = trimWhitespace(text);
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pid);
    if (error != std::errc() || end != text.data() + text.size() || pid < 1) return std::nullopt;
    return pid;
}

}  // namespace

std::expected<DriverSocketDirectory, Failure> DriverSocketDirectory::create(
    const std::string& applicationSupport) {
    const std::string support = withoutTrailingSlashes(applicationSupport);
    const UniqueFd root = openRoots(support, WhenMissing::make);
    if (!root) return refused("support roots must be directories this user owns");
    const auto id = makeUniqueFolder(root);
    if (!id) return refused("could not allocate a unique directory");

    auto made = inspectNew(root, support, *id);
    if (!made) ::unlinkat(root.get(), id->c_str(), AT_REMOVEDIR);
    return made;
}

std::string DriverSocketDirectory::pidFilePath() const {
    return path + "/" + pidFileName;
}

bool DriverSocketDirectory::isUnchangedAndOwned() const {
    return isUnchanged(*this, statusAt(AT_FDCWD, path));
}

std::expected<void, SystemError> DriverSocketDirectory::writeProcessIdentifier(pid_t pid) const {
    const auto failed = [filePath = pidFilePath()](const char* call) {
        return std::unexpected(SystemError::last(call, filePath));
    };
    const UniqueFd folder = openUnchanged(*this);
    if (!folder) return std::unexpected(SystemError{.call = "open " + path, .code = ESTALE});
    removeOurs(folder, pidFileName);
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const UniqueFd file(::openat(folder.get(), pidFileName, flags, pidFileMode));
    if (!file) return failed("open");
    if (::fchmod(file.get(), pidFileMode) != 0) return failed("fchmod");

    const std::string text = std::to_string(pid);
    if (writeAll(file.get(), text) < text.size()) return failed("write");
    return {};
}

std::optional<pid_t> DriverSocketDirectory::readProcessIdentifier() const {
    const UniqueFd folder = openUnchanged(*this);
    // Without O_NONBLOCK, opening a FIFO would wait for a writer.
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const UniqueFd file(folder ? ::openat(folder.get(), pidFileName, flags) : -1);
    const auto status = statusOf(file);
    if (!status || !S_ISREG(status->st_mode) || !isOurs(*status)) return std::nullopt;

    std::array<char, pidFileLimit> text{};
    const auto size = readInto(file, text);
    if (!size || *size == text.size()) return std::nullopt;  // the file may be longer
    return parsePid({text.data(), *size});
}

void DriverSocketDirectory::cleanup() const {
    const UniqueFd root = openForSearch(AT_FDCWD, parentFolder(path));
    const std::string name = path.substr(path.rfind('/') + 1);
    const UniqueFd folder = root ? openFolder(root.get(), name) : UniqueFd();
    if (!isUnchanged(*this, statusOf(folder))) return;
    removeOurs(folder, socketName);
    removeOurs(folder, pidFileName);
    // The comparison and the removal are not atomic, but rmdir removes only an empty folder.
    if (isUnchanged(*this, statusAt(root.get(), name))) ::unlinkat(root.get(), name.c_str(), AT_REMOVEDIR);
}

std::vector<DriverSocketDirectory> DriverSocketDirectory::owned(const std::string& applicationSupport) {
    const std::string support = withoutTrailingSlashes(applicationSupport);
    const UniqueFd root = openRoots(support, WhenMissing::leave);
    if (!root) return {};
    DirectoryReader names(openFolder(root.get(), "."));

    std::vector<DriverSocketDirectory> found;
    while (const char* entry = names.next()) {
        const std::string name = entry;
        if (!isID(name)) continue;
        const auto status = statusAt(root.get(), name);
        if (status && isOurPrivateFolder(*status)) found.push_back(record(support, name, *status));
    }
    return found;
}

bool DriverSocketDirectory::acceptsConnections(const std::string& socketPath) {
    sockaddr_un address{};
    if (socketPath.size() >= socketPathLimit || socketPath.contains('\0')) return false;
    address.sun_family = AF_UNIX;
    std::copy(socketPath.begin(), socketPath.end(), &address.sun_path[0]);

    const UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    if (!socket || ::fcntl(socket.get(), F_SETFD, FD_CLOEXEC) != 0 ||
        ::fcntl(socket.get(), F_SETFL, O_NONBLOCK) != 0) {
        return false;
    }
    // If the socket's queue is full, connect(2) fails with EAGAIN on Linux and ECONNREFUSED on Darwin. A
    // local socket never connects asynchronously (EINPROGRESS).
    return ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

std::string describe(const Failure& failure) {
    switch (failure.kind) {
        case Failure::Kind::socketPathTooLong: return "The driver's private socket path is too long";
        case Failure::Kind::directory: break;
    }
    return "Could not prepare the driver's socket directory: " + failure.reason;
}

}  // namespace tarnik
