#pragma once

#include <memory>

#include "app/platform/MainThread.h"

namespace tarnik {

// The main thread with Qt's event loop. Make it on that thread; the application object need not exist yet.
// Tasks that are posted before the loop runs are queued. Tasks that have not run when this is destroyed are
// dropped.
class QtMainThread {
public:
    QtMainThread();
    ~QtMainThread();
    QtMainThread(const QtMainThread&) = delete;
    QtMainThread& operator=(const QtMainThread&) = delete;

    // Returns the operations. post() does nothing after this is destroyed.
    MainThread operations() const;

private:
    struct Mailbox;

    const std::shared_ptr<Mailbox> mailbox_;
};

}  // namespace tarnik
