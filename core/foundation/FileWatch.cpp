#include "core/foundation/FileWatch.h"

#include <array>
#include <cerrno>
#include <utility>

#include <poll.h>
#include <sys/stat.h>

#include "core/foundation/Files.h"
#include "core/foundation/Paths.h"

namespace tarnik {

FileWatch::FileWatch(std::string path) : path_(std::move(path)) {}

// Reports a change at once if the watch is new, because the file may have changed before it began.
FileWatch::Event FileWatch::wait(const UniqueFd& file, int output) {
    const bool isNew = !events_ || std::exchange(watchedFile_, file.get()) != file.get();
    open(file);
    if (isNew && events_) return Event::mayHaveChanged;
    const auto event = poll(output);
    if (events_) takeEvents();
    if (!folderIsAtPath()) events_.reset();
    return event;
}

FileWatch::Event FileWatch::poll(int output) const {
    std::array<pollfd, 2> waits{
        {{.fd = events_.get(), .events = POLLIN, .revents = 0}, {.fd = output, .events = 0, .revents = 0}}};
    const auto retry = std::chrono::duration_cast<std::chrono::milliseconds>(retryInterval).count();
    const int timeout = events_ && exists(path_) ? -1 : static_cast<int>(retry);
    int count = 0;
    do count = ::poll(waits.data(), waits.size(), timeout);
    while (count < 0 && errno == EINTR);
    return waits[1].revents != 0 ? Event::readerGone : Event::mayHaveChanged;
}

bool FileWatch::folderIsAtPath() const {
    struct stat opened{};
    struct stat found{};
    return folder_ && ::fstat(folder_.get(), &opened) == 0 &&
           ::stat(parentFolder(path_).c_str(), &found) == 0 && opened.st_dev == found.st_dev &&
           opened.st_ino == found.st_ino;
}

}  // namespace tarnik
