#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

namespace tarnik {

// The last `limit` bytes of what was appended. Call from any thread.
class LockedData {
public:
    explicit LockedData(std::size_t limit) : limit_(limit) {}

    void append(std::string_view chunk) {
        const std::lock_guard lock(mutex_);
        data_.append(chunk);
        if (data_.size() > limit_) data_.erase(0, data_.size() - limit_);
    }

    std::string data() const {
        const std::lock_guard lock(mutex_);
        return data_;
    }

private:
    mutable std::mutex mutex_;
    std::string data_;
    const std::size_t limit_;
};

}  // namespace tarnik
