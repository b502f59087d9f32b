#include "core/process/ProcFolder.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <span>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/DirectoryReader.h"

namespace tarnik {

namespace {

constexpr std::string_view deletedMark = " (deleted)";

std::optional<pid_t> pidFrom(std::string_view text) {
    pid_t pid = 0;
    const auto [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), pid);
    if (error != std::errc() || stopped != text.data() + text.size() || pid < 1) return std::nullopt;
    return pid;
}

DirectoryReader openDirectory(int at, const char* name) {
    return DirectoryReader(UniqueFd(::openat(at, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
}

// Returns the names that are process or thread ids. Returns std::nullopt if the folder can't be read to the
// end.
std::optional<std::vector<pid_t>> pidsIn(DirectoryReader& directory) {
    std::vector<pid_t> pids;
    while (const char* name = directory.next()) {
        if (const auto pid = pidFrom(name)) pids.push_back(*pid);
    }
    if (directory.hasFailed()) return std::nullopt;
    return pids;
}

// Reads the whole file. Returns std::nullopt on failure, and if the contents fill the buffer.
std::optional<std::string_view> readAll(int file, std::span<char> buffer) {
    std::size_t length = 0;
    while (length < buffer.size()) {
        const ssize_t count = ::read(file, buffer.data() + length, buffer.size() - length);
        if (count < 0) return std::nullopt;
        if (count == 0) return std::string_view(buffer.data(), length);
        length += static_cast<std::size_t>(count);
    }
    return std::nullopt;
}

// Appends the pids of a text that has a space after each pid. Returns false for any other text.
bool appendPids(std::string_view text, std::vector<pid_t>& pids) {
    while (!text.empty()) {
        const std::size_t length = text.find(' ');
        const auto pid = length == text.npos ? std::nullopt : pidFrom(text.substr(0, length));
        if (!pid) return false;
        pids.push_back(*pid);
        text.remove_prefix(length + 1);
    }
    return true;
}

// Converts the errno of a failed open or read to a Missing.
ProcFolder::Missing missing() {
    const bool gone = errno == ENOENT || errno == ESRCH || errno == EACCES || errno == EPERM;
    return gone ? ProcFolder::Missing::process : ProcFolder::Missing::answer;
}

// Converts whole seconds and the rest separately, so that the multiplication can't overflow.
ProcessTime timeOf(std::uint64_t ticks, std::uint64_t perSecond) {
    constexpr std::uint64_t nanoseconds = 1'000'000'000;
    return ProcessTime(std::chrono::seconds(ticks / perSecond) +
                       std::chrono::nanoseconds(ticks % perSecond * nanoseconds / perSecond));
}

}  // namespace

ProcFolder::ProcFolder()
    : folder_(::open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      ticksPerSecond_(static_cast<std::uint64_t>(std::max(::sysconf(_SC_CLK_TCK), 1L))) {}

std::optional<std::vector<ProcessEntry>> ProcFolder::entries() {
    auto folder = openDirectory(folder_.get(), ".");
    const auto pids = pidsIn(folder);
    // The list contains at least this process, so an empty list is an error.
    if (!pids || pids->empty()) return std::nullopt;
    std::vector<ProcessEntry> entries;
    entries.reserve(pids->size());
    for (const pid_t pid : *pids) {
        auto found = entry(pid);
        if (found) {
            entries.push_back(std::move(*found));
        } else if (found.error() == Missing::answer) {
            return std::nullopt;
        }
    }
    return entries;
}

std::expected<ProcessEntry, ProcFolder::Missing> ProcFolder::entry(pid_t pid) {
    const auto found = stat(pid);
    if (!found) return std::unexpected(found.error());
    return ProcessEntry{.pid = pid,
                        .parent = found->parent,
                        .path = program(pid),
                        .started = timeOf(found->startTicks, ticksPerSecond_)};
}

std::expected<ProcessStat, ProcFolder::Missing> ProcFolder::stat(pid_t pid) {
    const UniqueFd file(::openat(folder_.get(), nameOf(pid, "stat"), O_RDONLY | O_CLOEXEC));
    if (!file) return std::unexpected(missing());
    // The kernel returns the whole line in one read.
    const ssize_t length = ::read(file.get(), text_.data(), text_.size());
    if (length < 0) return std::unexpected(missing());
    const auto parsed = ProcessStat::parse({text_.data(), static_cast<std::size_t>(length)});
    if (!parsed) return std::unexpected(Missing::answer);
    return *parsed;
}

std::optional<std::vector<pid_t>> ProcFolder::children(pid_t parent) {
    auto folder = openDirectory(folder_.get(), nameOf(parent, "task"));
    const auto threads = pidsIn(folder);
    const int at = folder.descriptor();
    if (!threads || at < 0) return std::nullopt;
    std::vector<pid_t> children;
    for (const pid_t thread : *threads) {
        const char* name = nameOf(thread, "children");
        const UniqueFd list(::openat(at, name, O_RDONLY | O_CLOEXEC));
        const auto text = list ? readAll(list.get(), text_) : std::nullopt;
        if (!text || !appendPids(*text, children)) return std::nullopt;
    }
    return children;
}

const char* ProcFolder::nameOf(pid_t pid, std::string_view file) {
    char* end = std::to_chars(name_.data(), name_.data() + name_.size(), pid).ptr;
    *end++ = '/';
    end = std::copy(file.begin(), file.end(), end);
    *end = '\0';
    return name_.data();
}

std::optional<std::string> ProcFolder::program(pid_t pid) {
    const char* link = nameOf(pid, "exe");
    const ssize_t length = ::readlinkat(folder_.get(), link, text_.data(), text_.size());
    if (length < 1) return std::nullopt;
    std::string path(text_.data(), static_cast<std::size_t>(length));
    // Linux appends this suffix to the path of a removed or replaced file. A file's own name may also end
    // with the suffix. In that case the path leads to the running program and keeps the suffix.
    if (path.ends_with(deletedMark) && !leadsTo(link, path)) path.resize(path.size() - deletedMark.size());
    return path;
}

bool ProcFolder::leadsTo(const char* link, const std::string& path) const {
    struct stat program = {};
    struct stat file = {};
    return ::fstatat(folder_.get(), link, &program, 0) == 0 && ::stat(path.c_str(), &file) == 0 &&
           program.st_dev == file.st_dev && program.st_ino == file.st_ino;
}

}  // namespace tarnik
