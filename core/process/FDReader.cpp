#include "core/process/FDReader.h"

#include <cerrno>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

#include "core/foundation/ThreadName.h"

namespace tarnik {

std::expected<std::shared_ptr<FDReader>, SpawnError> FDReader::start(UniqueFd fd, OnData onData,
                                                                     OnEOF onEOF) {
    auto reader = std::make_shared<FDReader>();
    try {
        std::thread([reader, fd = std::move(fd), onData = std::move(onData),
                     onEOF = std::move(onEOF)]() mutable {
            setThreadName("tarnik.read." + std::to_string(fd.get()));
            reader->read(std::move(fd), onData);
            if (onEOF) onEOF();
        }).detach();
    } catch (const std::system_error& error) {
        return std::unexpected(SpawnError{"pthread_create", error.code().value()});
    }
    return reader;
}

void FDReader::read(UniqueFd fd, const OnData& onData) {
    std::vector<char> buffer(chunkBytes);
    while (true) {
        const ssize_t count = ::read(fd.get(), buffer.data(), buffer.size());
        if (count > 0) {
            onData(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
        } else if (count == 0 || errno != EINTR) {
            break;  // a pseudo-terminal's end is an error (EIO) on Linux and a 0 on Darwin
        }
    }
    fd.reset();
    {
        const std::lock_guard lock(mutex_);
        finished_ = true;
    }
    done_.notify_all();
}

bool FDReader::waitForEOF(Seconds timeout) const {
    const TimePoint deadline = after(steadyNow(), timeout);
    std::unique_lock lock(mutex_);
    return done_.wait_until(lock, deadline, [this] { return finished_; });
}

}  // namespace tarnik
