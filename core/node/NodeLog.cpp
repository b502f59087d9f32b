#include "core/node/NodeLog.h"

#include <system_error>
#include <thread>
#include <utility>

#include "core/foundation/ThreadName.h"
#include "core/process/Spawner.h"

namespace tarnik {

std::shared_ptr<NodeLog> NodeLog::make(std::string path, std::int64_t capBytes, RotatingFile::Clock now) {
    return std::make_shared<NodeLog>(Passkey(), std::move(path), capBytes, std::move(now));
}

NodeLog::NodeLog(Passkey, std::string path, std::int64_t capBytes, RotatingFile::Clock now)
    : file_(std::move(path), capBytes, std::move(now)) {}

NodeLog::Output NodeLog::attach() {
    if (!opensInTime()) return {};
    auto pipe = Spawner::pipe();
    if (!pipe) return {};
    const auto reader = FDReader::start(
        std::move(pipe->readEnd), [log = shared_from_this()](std::string_view chunk) { log->append(chunk); });
    if (!reader) return {};
    const MutexLock lock(mutex_);
    lastReader_ = *reader;
    return {std::move(pipe->writeEnd), *reader};
}

void NodeLog::drain(Seconds timeout) {
    std::shared_ptr<FDReader> reader;
    {
        const MutexLock lock(mutex_);
        reader = lastReader_.lock();
    }
    if (reader) reader->waitForEOF(timeout);
}

// Opens the file on a thread of its own, because a disk that hangs may never return. While an earlier thread
// still waits for the disk, no other thread is started.
bool NodeLog::opensInTime() {
    MutexLock lock(mutex_);
    if (isOpening_) return false;
    try {
        std::thread([log = shared_from_this()] {
            setThreadName("tarnik.node-log");
            bool isOpen = false;
            {
                const MutexLock fileLock(log->fileMutex_);
                isOpen = log->file_.isOpen();
            }
            const MutexLock doneLock(log->mutex_);
            log->isOpen_ = isOpen;
            log->isOpening_ = false;
            log->opened_.notifyAll();
        }).detach();
    } catch (const std::system_error&) {
        return false;
    }
    isOpening_ = true;
    const TimePoint deadline = after(steadyNow(), openLimit);
    while (isOpening_ && opened_.waitUntil(lock, deadline)) continue;
    return !isOpening_ && isOpen_;
}

void NodeLog::append(std::string_view data) {
    const MutexLock lock(fileMutex_);
    file_.append(data);
}

}  // namespace tarnik
