#include "core/node/NodeLog.h"

#include <utility>

#include "core/process/Spawner.h"

namespace tarnik {

std::shared_ptr<NodeLog> NodeLog::make(std::string path, std::int64_t capBytes, RotatingFile::Clock now) {
    return std::make_shared<NodeLog>(Passkey(), std::move(path), capBytes, std::move(now));
}

NodeLog::NodeLog(Passkey, std::string path, std::int64_t capBytes, RotatingFile::Clock now)
    : file_(std::move(path), capBytes, std::move(now)) {}

NodeLog::Output NodeLog::attach() {
    {
        const MutexLock lock(mutex_);
        if (!file_.isOpen()) return {};
    }
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

void NodeLog::append(std::string_view data) {
    const MutexLock lock(mutex_);
    file_.append(data);
}

}  // namespace tarnik
