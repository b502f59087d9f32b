#include "core/foundation/LogFollower.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnik {
namespace {

UniqueFd openLog(const std::string& path) {
    UniqueFd file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat found{};
    if (!file || ::fstat(file.get(), &found) != 0 || !S_ISREG(found.st_mode)) return {};
    return file;
}

off_t sizeOf(const UniqueFd& file) {
    struct stat found{};
    return ::fstat(file.get(), &found) == 0 ? found.st_size : 0;
}

// Returns the last whole lines of the first `end` bytes.
std::string tailOf(const UniqueFd& file, off_t end, std::size_t maxBytes) {
    const off_t start = std::max<off_t>(end - static_cast<off_t>(maxBytes), 0);
    std::string text(static_cast<std::size_t>(end - start), '\0');
    const ssize_t count = text.empty() ? 0 : ::pread(file.get(), text.data(), text.size(), start);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (start > 0) text.erase(0, text.find('\n')).erase(0, 1);  // the first line may be incomplete
    return text;
}

}  // namespace

LogFollower::LogFollower(std::string path) : path_(std::move(path)), file_(openLog(path_)) {
    if (file_) start_ = offset_ = sizeOf(file_);
}

std::string LogFollower::tail(std::size_t maxBytes) const {
    const std::string newer = file_ ? tailOf(file_, start_, maxBytes) : "";
    const std::string olderPath = path_ + ".1";
    const UniqueFd olderFile = isOpenAt(olderPath) ? UniqueFd() : openLog(olderPath);  // rotated just now
    std::string older = olderFile ? tailOf(olderFile, sizeOf(olderFile), maxBytes - newer.size()) : "";
    if (!older.empty() && !older.ends_with('\n')) older += '\n';
    return older + newer;
}

std::string LogFollower::read() {
    if (file_) {
        if (auto text = readOpenFile(); !text.empty()) return text;
        if (isOpenAt(path_)) return {};
        // The last bytes may have been written between the read and the rename.
        if (auto text = readOpenFile(); !text.empty()) return text;
    }
    auto next = openLog(path_);
    if (!next) return {};  // the old file is kept until its successor exists
    file_ = std::move(next);
    offset_ = 0;
    return readOpenFile();
}

// A file that became shorter was cut, so it is read from its start.
std::string LogFollower::readOpenFile() {
    const off_t size = sizeOf(file_);
    if (size < offset_) offset_ = 0;
    std::string text(std::min<std::size_t>(static_cast<std::size_t>(size - offset_), maxRead), '\0');
    const ssize_t count = text.empty() ? 0 : ::pread(file_.get(), text.data(), text.size(), offset_);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    offset_ += static_cast<off_t>(text.size());
    return text;
}

bool LogFollower::isOpenAt(const std::string& path) const {
    struct stat opened{};
    struct stat found{};
    if (!file_ || ::lstat(path.c_str(), &found) != 0 || ::fstat(file_.get(), &opened) != 0) return false;
    return opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
}

}  // namespace tarnik
