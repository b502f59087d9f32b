#include "core/foundation/Files.h"

#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/DirectoryReader.h"
#include "core/foundation/Paths.h"

namespace tarnik {

namespace fs = std::filesystem;

namespace {

std::unexpected<SystemError> failed(const char* call, const std::string& path) {
    return std::unexpected(SystemError::last(call, path));
}

enum class Links { follow, keep };

// Returns std::nullopt on any failure.
std::optional<mode_t> modeOf(const std::string& path, Links links) {
    struct stat found{};
    const int result = links == Links::follow ? ::stat(path.c_str(), &found) : ::lstat(path.c_str(), &found);
    if (result != 0) return std::nullopt;
    return found.st_mode;
}

// Gives the owner full access to `top` and to every folder below it.
void grantAccess(const fs::path& top) {
    std::vector<fs::path> waiting{top};
    while (!waiting.empty()) {
        const fs::path folder = std::move(waiting.back());
        waiting.pop_back();
        std::error_code error;
        if (fs::symlink_status(folder, error).type() != fs::file_type::directory) continue;
        fs::permissions(folder, fs::perms::owner_all, error);
        fs::directory_iterator entry(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            std::error_code unknown;
            if (entry->is_directory(unknown) && !entry->is_symlink(unknown)) waiting.push_back(entry->path());
        }
    }
}

bool isGone(const fs::path& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() == fs::file_type::not_found;
}

}  // namespace

std::expected<void, SystemError> createFolders(const std::string& path, mode_t mode) {
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

std::expected<void, SystemError> writeFile(const std::string& path, std::string_view bytes, mode_t mode) {
    // Without O_NONBLOCK a pipe in the file's place would make the call wait for a reader.
    constexpr int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const UniqueFd file(::open(path.c_str(), flags, mode));
    if (!file) return failed("open", path);

    struct stat found{};
    if (::fstat(file.get(), &found) != 0) return failed("fstat", path);
    if (!S_ISREG(found.st_mode)) return std::unexpected(SystemError{.call = "open " + path, .code = EEXIST});
    if (::ftruncate(file.get(), 0) != 0) return failed("ftruncate", path);

    if (writeAll(file.get(), bytes) < bytes.size()) return failed("write", path);
    return {};
}

std::optional<std::string> readFile(const std::string& path, std::size_t maxBytes) {
    const UniqueFd file = openRegularFile(path);
    if (!file) return std::nullopt;
    return readRest(file, maxBytes);
}

UniqueFd openRegularFile(const std::string& path) {
    // Without O_NONBLOCK a pipe in the file's place would make the call wait for a writer.
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

std::optional<std::string> readRest(const UniqueFd& file, std::size_t maxBytes) {
    std::string bytes(maxBytes + 1, '\0');  // one byte more, to detect a longer file
    const auto size = readInto(file, bytes);
    if (!size || *size > maxBytes) return std::nullopt;
    bytes.resize(*size);
    return bytes;
}

bool removeTree(const std::string& path) {
    std::error_code error;
    fs::remove_all(path, error);
    if (isGone(path)) return true;
    grantAccess(path);
    fs::remove_all(path, error);
    return isGone(path);
}

bool exists(const std::string& path) {
    return modeOf(path, Links::follow).has_value();
}

bool isFolder(const std::string& path) {
    const auto mode = modeOf(path, Links::follow);
    return mode && S_ISDIR(*mode);
}

bool isExecutableFile(const std::string& path) {
    const auto mode = modeOf(path, Links::follow);
    return mode && S_ISREG(*mode) && ::access(path.c_str(), X_OK) == 0;
}

bool holdsEntries(const std::string& folder, std::string_view otherThan) {
    DirectoryReader names(UniqueFd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
    while (const char* name = names.next()) {
        if (name != otherThan) return true;
    }
    return false;
}

bool isLink(const std::string& path) {
    const auto mode = modeOf(path, Links::keep);
    return mode && S_ISLNK(*mode);
}

bool isRegularFile(const std::string& path) {
    const auto mode = modeOf(path, Links::keep);
    return mode && S_ISREG(*mode);
}

}  // namespace tarnik
