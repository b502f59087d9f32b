#pragma once

#include <condition_variable>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "core/foundation/SystemError.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Drains one descriptor on a thread of its own, chunk by chunk, until it ends.
//
// The end comes only when every copy of the write end is closed, so a grandchild can delay it for ever: wait
// for it with a bound, and call closeAfter() once the child has ended, or each such child costs a thread and
// a descriptor. The thread keeps what it needs alive and nobody joins it.
class FDReader {
public:
    static constexpr std::size_t chunkBytes = 16384;

    // The bytes are valid for the call.
    using OnData = std::function<void(std::string_view)>;
    using OnEOF = std::function<void()>;

    // Starts reading. `onData` runs on the reader's thread for each chunk in order, `onEOF` there after the
    // last one, with no lock held. Fails with call "pthread_create" or "pipe"; the descriptor is closed then.
    static std::expected<std::shared_ptr<FDReader>, SystemError> start(UniqueFd fd, OnData onData,
                                                                       OnEOF onEOF = {});

    // Waits at most `timeout` for the descriptor to have ended and been closed; whether it has.
    bool waitForEOF(Seconds timeout) const;

    // Closes the descriptor `grace` from now unless it has ended by then; `onEOF` is called as at its end.
    // Returns at once; of several calls the first counts. Call from any thread.
    void closeAfter(Seconds grace);

private:
    void read(UniqueFd fd, const OnData& onData);
    bool waitReadable(const UniqueFd& fd) const;
    std::optional<TimePoint> closeAt() const;

    UniqueFd wakeRead_;  // the thread's own

    mutable std::mutex mutex_;
    mutable std::condition_variable done_;
    UniqueFd wakeWrite_;  // closing it wakes the thread, which then looks at `closeAt_`
    std::optional<TimePoint> closeAt_;
    bool finished_ = false;
};

}  // namespace tarnik
