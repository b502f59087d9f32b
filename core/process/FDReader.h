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

// Reads one descriptor to the end on a thread of its own, in chunks.
//
// The end is reached when every copy of the write end is closed. A grandchild may hold a copy open forever.
// This keeps a thread and a descriptor in use. Wait with a time-out. Call closeAfter() after the child has
// exited. The thread shares ownership of the reader and is never joined.
class FDReader {
public:
    static constexpr std::size_t chunkBytes = 16384;

    // The bytes are valid during the call.
    using OnData = std::function<void(std::string_view)>;
    using OnEOF = std::function<void()>;

    // Starts the thread. It calls `onData` for each chunk, in order. It calls `onEOF` once, after the
    // descriptor is closed. It holds no lock during these calls. The error's `call` is "pthread_create" or
    // "pipe". A failed start closes `fd`.
    static std::expected<std::shared_ptr<FDReader>, SystemError> start(UniqueFd fd, OnData onData,
                                                                       OnEOF onEOF = {});

    // Waits up to `timeout`. Returns true if the reader has closed the descriptor, at the end or by
    // closeAfter().
    bool waitForEOF(Seconds timeout) const;

    // Makes the reader close the descriptor after `grace`, unless the reader reaches the end before. Does not
    // wait. Only the first call has an effect. Call from any thread.
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
