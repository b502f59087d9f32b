#include "core/foundation/RotatingFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/Paths.h"

namespace tarnik {
namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

struct LogFile {
    UniqueFd fd;
    std::int64_t size = 0;
};

// Without O_NONBLOCK, opening a FIFO would wait for a reader. The flag has no effect on a regular file.
LogFile openLogFile(const std::string& path) {
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    LogFile file{UniqueFd(::open(path.c_str(), flags, fileMode))};
    if (!file.fd) return {};
    struct stat status = {};
    if (::fstat(file.fd.get(), &status) != 0) return {};
    if (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid()) return {};
    file.size = status.st_size;
    return file;
}

}  // namespace

RotatingFile::RotatingFile(std::string path, std::int64_t capBytes, Clock now)
    : path_(std::move(path)), cap_(std::max<std::int64_t>(capBytes, 1)), now_(std::move(now)) {}

bool RotatingFile::append(std::string_view data) {
    if (data.empty()) return true;
    if (!isOpen()) return false;
    if (size_ >= cap_) rotate();  // an earlier rotation failed
    if (!file_ || size_ >= cap_) return false;
    const std::size_t written = writeAll(file_.get(), data);
    size_ += static_cast<std::int64_t>(written);
    if (size_ >= cap_) rotate();
    return written == data.size();
}

// Reopens the file if another file is at the path. Checks the path only once per checkInterval, because a
// check costs as much as a short write.
bool RotatingFile::isOpen() {
    if (!file_) return reopen();
    const TimePoint now = now_();
    if (now < nextCheck_) return true;
    nextCheck_ = after(now, checkInterval);
    struct stat status = {};
    if (::fstat(file_.get(), &status) == 0) size_ = status.st_size;  // another program may write too
    return isAtPath() || reopen();
}

bool RotatingFile::reopen() {
    if (!open()) return false;
    if (size_ >= cap_) rotate();
    return static_cast<bool>(file_);
}

// Closes the open file, and opens or creates the file at the path.
bool RotatingFile::open() {
    // If the folder can't be created, opening the file fails.
    [[maybe_unused]] const auto made = createFolders(parentFolder(path_), folderMode);
    auto [fd, size] = openLogFile(path_);
    file_ = std::move(fd);
    size_ = size;
    nextCheck_ = after(now_(), checkInterval);
    return static_cast<bool>(file_);
}

// Returns true if the open file is the file at the path, or if the comparison fails.
bool RotatingFile::isAtPath() const {
    struct stat opened = {};
    struct stat found = {};
    if (::lstat(path_.c_str(), &found) != 0) return errno != ENOENT && errno != ENOTDIR;
    if (::fstat(file_.get(), &opened) != 0) return true;
    return opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
}

// Renames the file to the older copy and opens a new one. Truncates a file that can't be renamed, for example
// because the older copy's path is a folder. So the file never exceeds the cap by more than one append.
void RotatingFile::rotate() {
    // Keeps the older copy if the open file has left the path.
    if (isAtPath()) {
        const std::string older = path_ + ".1";
        // The older copy is removed first, because on ext4 a rename that replaces a file flushes the new file
        // to the disk.
        ::unlink(older.c_str());
        if (::rename(path_.c_str(), older.c_str()) != 0 && errno != ENOENT) {
            if (::ftruncate(file_.get(), 0) == 0) size_ = 0;
            return;
        }
    }
    open();
}

}  // namespace tarnik
