#pragma once

#include <memory>

#include "app/platform/MainThread.h"

namespace tarnik {

// The main thread of a program with Qt's loop. Made on that thread, also before the application object; what
// is posted before the loop runs waits for it, and what is left when this goes is dropped.
class QtMainThread {
public:
    QtMainThread();
    ~QtMainThread();
    QtMainThread(const QtMainThread&) = delete;
    QtMainThread& operator=(const QtMainThread&) = delete;

    // As the shell sees it; harmless once this is gone.
    MainThread operations() const;

private:
    struct Mailbox;

    const std::shared_ptr<Mailbox> mailbox_;
};

}  // namespace tarnik
