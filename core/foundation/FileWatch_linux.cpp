#include "core/foundation/FileWatch.h"

#include <array>
#include <cstdint>
#include <utility>

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "core/foundation/Paths.h"

namespace tarnik {

// The folder's events include those of the file, also after it was replaced.
void FileWatch::open(const UniqueFd&) {
    if (events_) return;
    constexpr std::uint32_t changes =
        IN_MODIFY | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
    const auto path = parentFolder(path_);
    UniqueFd events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    UniqueFd folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!events || !folder || ::inotify_add_watch(events.get(), path.c_str(), changes) < 0) return;
    events_ = std::move(events);
    folder_ = std::move(folder);
}

// Empties the queue of events, whose content is not needed.
void FileWatch::takeEvents() const {
    std::array<char, 4096> ignored{};
    while (::read(events_.get(), ignored.data(), ignored.size()) > 0) continue;
}

}  // namespace tarnik
