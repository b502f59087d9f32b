#include "core/foundation/Files.h"

#include <cerrno>
#include <memory>
#include <optional>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/ErrorText.h"
#include "core/foundation/Paths.h"

namespace tarnik {

namespace {

std::unexpected<FileError> failed(const char* call, const std::string& path) {
    return std::unexpected(FileError::last(call, path));
}

// What `path` leads to, or the link itself; none when it can't be told.
using Look = int (*)(const char*, struct stat*);
std::optional<mode_t> modeOf(const std::string& path, Look look) {
    struct stat found{};
    if (look(path.c_str(), &found) != 0) return std::nullopt;
    return found.st_mode;
}

int followingLinks(const char* path, struct stat* found) {
    return ::stat(path, found);
}

int theEntryItself(const char* path, struct stat* found) {
    return ::lstat(path, found);
}

}  // namespace

FileError FileError::last(const char* call, const std::string& path) {
    const int code = errno;  // before the text below takes memory
    return {.call = call + (" " + path), .code = code};
}

std::string describe(const FileError& error) {
    return error.call + " failed: " + errorText(error.code);
}

std::expected<void, FileError> createFolders(const std::string& path, mode_t mode) {
    int made = ::mkdir(path.c_str(), mode);
    if (made != 0 && errno == ENOENT && path != "/") {
        if (auto above = createFolders(parentFolder(path), mode); !above) return above;
        made = ::mkdir(path.c_str(), mode);
    }
    if (made != 0) {
        const int code = errno;
        if (isFolder(path)) return {};
        errno = code;
        return failed("mkdir", path);
    }
    if (::fchmodat(AT_FDCWD, path.c_str(), mode, AT_SYMLINK_NOFOLLOW) != 0) return failed("chmod", path);
    return {};
}

std::expected<void, FileError> writeFile(const std::string& path, std::string_view bytes, mode_t mode) {
    // Without O_NONBLOCK a pipe in the file's place would make us wait for a reader.
    constexpr int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const UniqueFd file(::open(path.c_str(), flags, mode));
    if (!file) return failed("open", path);

    struct stat found{};
    if (::fstat(file.get(), &found) != 0) return failed("fstat", path);
    if (!S_ISREG(found.st_mode)) return std::unexpected(FileError{.call = "open " + path, .code = EEXIST});
    if (::ftruncate(file.get(), 0) != 0) return failed("ftruncate", path);

    if (writeAll(file.get(), bytes) < bytes.size()) return failed("write", path);
    return {};
}

std::optional<std::string> readFile(const std::string& path, std::size_t maxBytes) {
    const UniqueFd file = openRegularFile(path);
    if (!file) return std::nullopt;
    std::string bytes(maxBytes + 1, '\0');  // one more, to see that there is no more
    const auto size = readInto(file, bytes);
    if (!size || *size > maxBytes) return std::nullopt;
    bytes.resize(*size);
    return bytes;
}

UniqueFd openRegularFile(const std::string& path) {
    // Without O_NONBLOCK a pipe in the file's place would make us wait for a writer.
    UniqueFd file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat found{};
    if (!file || ::fstat(file.get(), &found) != 0 || !S_ISREG(found.st_mode)) return {};
    return file;
}

std::size_t writeAll(int fd, std::string_view bytes, WriteCall write) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = write(fd, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count == 0) errno = EIO;
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

std::optional<std::size_t> readInto(const UniqueFd& file, std::span<char> buffer) {
    std::size_t size = 0;
    while (size < buffer.size()) {
        const ssize_t count = ::read(file.get(), buffer.data() + size, buffer.size() - size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        size += static_cast<std::size_t>(count);
    }
    return size;
}

bool exists(const std::string& path) {
    return modeOf(path, followingLinks).has_value();
}

bool isFolder(const std::string& path) {
    const auto mode = modeOf(path, followingLinks);
    return mode && S_ISDIR(*mode);
}

bool isExecutableFile(const std::string& path) {
    const auto mode = modeOf(path, followingLinks);
    return mode && S_ISREG(*mode) && ::access(path.c_str(), X_OK) == 0;
}

bool holdsEntries(const std::string& folder, std::string_view otherThan) {
    struct Close {
        void operator()(DIR* open) const { ::closedir(open); }
    };
    const std::unique_ptr<DIR, Close> open(::opendir(folder.c_str()));
    if (!open) return false;
    while (const dirent* entry = ::readdir(open.get())) {
        const std::string_view name = &entry->d_name[0];
        if (name != "." && name != ".." && name != otherThan) return true;
    }
    return false;
}

bool isLink(const std::string& path) {
    const auto mode = modeOf(path, theEntryItself);
    return mode && S_ISLNK(*mode);
}

bool isRegularFile(const std::string& path) {
    const auto mode = modeOf(path, theEntryItself);
    return mode && S_ISREG(*mode);
}

}  // namespace tarnik
