#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/foundation/Mutex.h"

namespace tarnik {

// Keeps the last `limit` bytes of the appended data. Call from any thread.
class LockedData {
public:
    explicit LockedData(std::size_t limit) : limit_(limit) {}

    void append(std::string_view chunk) {
        const MutexLock lock(mutex_);
        data_.append(chunk);
        if (data_.size() > limit_) data_.erase(0, data_.size() - limit_);
    }

    std::string data() const {
        const MutexLock lock(mutex_);
        return data_;
    }

private:
    mutable Mutex mutex_;
    std::string data_ TARNIK_GUARDED_BY(mutex_);
    const std::size_t limit_;
};

}  // namespace tarnik
