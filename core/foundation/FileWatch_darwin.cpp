#include "core/foundation/FileWatch.h"

#include <array>
#include <cstdint>
#include <utility>

#include <fcntl.h>
#include <sys/event.h>
#include <time.h>
#include <unistd.h>

#include "core/foundation/Paths.h"

namespace tarnik {
namespace {

constexpr std::uint32_t changes = NOTE_WRITE | NOTE_EXTEND | NOTE_DELETE | NOTE_RENAME | NOTE_REVOKE;

struct kevent changeOf(int fd) {
    struct kevent change{};
    EV_SET(&change, static_cast<std::uintptr_t>(fd), EVFILT_VNODE, EV_ADD | EV_CLEAR, changes, 0, nullptr);
    return change;
}

}  // namespace

// The folder's events report that a file was created, renamed or removed. Writes are events of the file; its
// watch ends when the caller closes it.
void FileWatch::open(const UniqueFd& file) {
    if (!events_) {
        UniqueFd events(::kqueue());
        UniqueFd folder(::open(parentFolder(path_).c_str(), O_EVTONLY | O_CLOEXEC | O_DIRECTORY));
        if (!events || !folder || ::fcntl(events.get(), F_SETFD, FD_CLOEXEC) != 0) return;
        const auto change = changeOf(folder.get());
        if (::kevent(events.get(), &change, 1, nullptr, 0, nullptr) != 0) return;
        folder_ = std::move(folder);
        events_ = std::move(events);
    }
    if (!file) return;
    const auto change = changeOf(file.get());
    ::kevent(events_.get(), &change, 1, nullptr, 0, nullptr);
}

// Empties the queue of events, whose content is not needed.
void FileWatch::takeEvents() const {
    constexpr timespec atOnce{};
    std::array<struct kevent, 8> ignored{};
    const int size = static_cast<int>(ignored.size());
    while (::kevent(events_.get(), nullptr, 0, ignored.data(), size, &atOnce) > 0) continue;
}

}  // namespace tarnik
