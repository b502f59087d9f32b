#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "core/foundation/Mutex.h"
#include "core/foundation/SystemError.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Reads one descriptor to its end on a thread of its own, chunk by chunk.
//
// The end is reached when every copy of the write end is closed. A grandchild may keep one open for ever,
// which costs a thread and a descriptor. So wait for the end with a time-out, and call closeAfter() once the
// child has ended. The thread shares ownership of the reader and is never joined.
class FDReader {
public:
    static constexpr std::size_t chunkBytes = 16384;

    // The bytes are valid during the call.
    using OnData = std::function<void(std::string_view)>;
    using OnEOF = std::function<void()>;

    // Starts reading. `onData` runs on the reader's thread for each chunk in order, `onEOF` after the last
    // one, both without a lock. Fails with call "pthread_create" or "pipe"; `fd` is closed then.
    static std::expected<std::shared_ptr<FDReader>, SystemError> start(UniqueFd fd, OnData onData,
                                                                       OnEOF onEOF = {});

    // Waits at most `timeout` for the end. Returns true if the end was reached and the descriptor is closed.
    bool waitForEOF(Seconds timeout) const;

    // Closes the descriptor after `grace` unless the end was reached before; `onEOF` is called in either
    // case. Returns at once. Only the first call has an effect. Call from any thread.
    void closeAfter(Seconds grace);

private:
    void read(UniqueFd fd, const OnData& onData);
    bool waitReadable(const UniqueFd& fd) const;
    std::optional<TimePoint> closeAt() const;

    UniqueFd wakeRead_;  // used on the thread only

    mutable Mutex mutex_;
    mutable Condition done_;
    UniqueFd wakeWrite_ TARNIK_GUARDED_BY(mutex_);  // closed to make the thread check closeAt_
    std::optional<TimePoint> closeAt_ TARNIK_GUARDED_BY(mutex_);
    bool finished_ TARNIK_GUARDED_BY(mutex_) = false;
};

}  // namespace tarnik
