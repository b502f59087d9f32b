#pragma once

#include <memory>

#include "app/platform/MainThread.h"

namespace tarnik {

// The main thread with Qt's event loop. Create it on that thread. The application object may be created
// later. Tasks that are posted before the loop runs are queued. The destructor drops the tasks that have not
// run.
class QtMainThread {
public:
    QtMainThread();
    ~QtMainThread();
    QtMainThread(const QtMainThread&) = delete;
    QtMainThread& operator=(const QtMainThread&) = delete;

    // Returns the operations. post() does nothing after this object is destroyed.
    MainThread operations() const;

private:
    struct Mailbox;

    const std::shared_ptr<Mailbox> mailbox_;
};

}  // namespace tarnik
