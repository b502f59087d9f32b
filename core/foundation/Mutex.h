#pragma once

#include <condition_variable>
#include <mutex>

#include "core/foundation/Time.h"

// clang checks these annotations (-Wthread-safety). TARNIK_THREAD_ANNOTATION is defined in
// cmake/CompileOptions.cmake: an attribute for clang, empty for other compilers.

// The field is read and written only while `mutex` is locked.
#define TARNIK_GUARDED_BY(mutex) TARNIK_THREAD_ANNOTATION(guarded_by(mutex))
// The caller of the function has locked `mutex`.
#define TARNIK_REQUIRES(mutex) TARNIK_THREAD_ANNOTATION(requires_capability(mutex))
// The caller of the function has not locked `mutex`.
#define TARNIK_EXCLUDES(mutex) TARNIK_THREAD_ANNOTATION(locks_excluded(mutex))

namespace tarnik {

// A mutex whose use clang can check. std::mutex of libstdc++ has no annotations.
class TARNIK_THREAD_ANNOTATION(capability("mutex")) Mutex {
    friend class MutexLock;
    std::mutex mutex_;
};

// Locks a mutex for the length of a scope.
class TARNIK_THREAD_ANNOTATION(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& mutex) TARNIK_THREAD_ANNOTATION(acquire_capability(mutex))
        : lock_(mutex.mutex_) {}
    ~MutexLock() TARNIK_THREAD_ANNOTATION(release_capability()) = default;
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    // Unlock the mutex before the end of the scope, and lock the mutex again.
    void unlock() TARNIK_THREAD_ANNOTATION(release_capability()) { lock_.unlock(); }
    void lock() TARNIK_THREAD_ANNOTATION(acquire_capability()) { lock_.lock(); }

private:
    friend class Condition;
    std::unique_lock<std::mutex> lock_;
};

// A condition variable. wait() takes no predicate, because inside a lambda the compiler doesn't know which
// mutex is locked. Wait in a loop that checks the fields.
class Condition {
public:
    void notifyOne() { changed_.notify_one(); }
    void notifyAll() { changed_.notify_all(); }

    // Return after a notification, or spuriously. waitUntil() also returns at the deadline, with false.
    void wait(MutexLock& lock) { changed_.wait(lock.lock_); }
    bool waitUntil(MutexLock& lock, TimePoint deadline) {
        return changed_.wait_until(lock.lock_, deadline) == std::cv_status::no_timeout;
    }

private:
    std::condition_variable changed_;
};

}  // namespace tarnik
