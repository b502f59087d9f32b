#include "core/process/FDReader.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <limits>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include "core/foundation/ThreadName.h"
#include "core/process/Spawner.h"

namespace tarnik {

std::expected<std::shared_ptr<FDReader>, SystemError> FDReader::start(UniqueFd fd, OnData onData,
                                                                      OnEOF onEOF) {
    auto wake = Spawner::pipe();
    if (!wake) return std::unexpected(wake.error());
    auto reader = std::make_shared<FDReader>();
    reader->wakeRead_ = std::move(wake->readEnd);
    {
        const MutexLock lock(reader->mutex_);
        reader->wakeWrite_ = std::move(wake->writeEnd);
    }
    try {
        std::thread([reader, fd = std::move(fd), onData = std::move(onData),
                     onEOF = std::move(onEOF)]() mutable {
            setThreadName("tarnik.read." + std::to_string(fd.get()));
            reader->read(std::move(fd), onData);
            if (onEOF) onEOF();
        }).detach();
    } catch (const std::system_error& error) {
        return std::unexpected(SystemError{"pthread_create", error.code().value()});
    }
    return reader;
}

void FDReader::read(UniqueFd fd, const OnData& onData) {
    std::vector<char> buffer(chunkBytes);
    while (fd && waitReadable(fd)) {
        const ssize_t count = ::read(fd.get(), buffer.data(), buffer.size());
        if (count > 0) {
            onData(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
        } else if (count == 0 || errno != EINTR) {
            break;  // at the end of a pseudo-terminal, read(2) fails with EIO on Linux
        }
    }
    fd.reset();
    wakeRead_.reset();
    {
        const MutexLock lock(mutex_);
        wakeWrite_.reset();
        finished_ = true;
    }
    done_.notifyAll();
}

// Waits until the descriptor is readable. Returns false once closeAt_ has passed, even if unread data is
// left. Returns true if the system can't poll the descriptor. The read may then block.
bool FDReader::waitReadable(const UniqueFd& fd) const {
    while (true) {
        const auto closeAt = this->closeAt();
        int timeout = -1;
        if (closeAt) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(*closeAt - steadyNow()).count();
            if (left <= 0) return false;
            timeout = static_cast<int>(std::min<decltype(left)>(left, std::numeric_limits<int>::max()));
        }
        pollfd entries[] = {{.fd = fd.get(), .events = POLLIN, .revents = 0},
                            {.fd = closeAt ? -1 : wakeRead_.get(), .events = POLLIN, .revents = 0}};
        const int ready = ::poll(&entries[0], std::size(entries), timeout);
        if (ready < 0 && errno != EINTR) return true;
        if (ready > 0 && entries[0].revents != 0) return true;
    }
}

void FDReader::closeAfter(Seconds grace) {
    const MutexLock lock(mutex_);
    if (closeAt_) return;
    closeAt_ = after(steadyNow(), grace);
    wakeWrite_.reset();
}

std::optional<TimePoint> FDReader::closeAt() const {
    const MutexLock lock(mutex_);
    return closeAt_;
}

bool FDReader::waitForEOF(Seconds timeout) const {
    const TimePoint deadline = after(steadyNow(), timeout);
    MutexLock lock(mutex_);
    while (!finished_ && done_.waitUntil(lock, deadline)) continue;
    return finished_;
}

}  // namespace tarnik
