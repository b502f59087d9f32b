#pragma once

#include <condition_variable>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>

#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/SpawnError.h"

namespace tarnik {

// Drains one descriptor on a thread of its own, chunk by chunk, until it ends.
//
// The end comes only when every copy of the write end is closed, so a grandchild can hold it off for ever:
// wait for it with a bound. The thread keeps what it needs alive and nobody joins it.
class FDReader {
public:
    static constexpr std::size_t chunkBytes = 16384;

    // The bytes are valid for the call.
    using OnData = std::function<void(std::string_view)>;
    using OnEOF = std::function<void()>;

    // Starts reading. `onData` runs on the reader's thread for each chunk in order, `onEOF` there after the
    // last one, with no lock held. Fails with call "pthread_create"; the descriptor is closed then.
    static std::expected<std::shared_ptr<FDReader>, SpawnError> start(UniqueFd fd, OnData onData,
                                                                      OnEOF onEOF = {});

    // Waits at most `timeout` for the descriptor to have ended and been closed; whether it has.
    bool waitForEOF(Seconds timeout) const;

private:
    void read(UniqueFd fd, const OnData& onData);

    mutable std::mutex mutex_;
    mutable std::condition_variable done_;
    bool finished_ = false;
};

}  // namespace tarnik
