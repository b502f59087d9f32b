#pragma once

#include <memory>

#include "app/platform/MainThread.h"

namespace tarnik {

// The main thread with Qt's event loop. Make it on that thread; the application object need not exist yet.
// Tasks that are posted before the loop runs wait for it. Tasks left when this is destroyed are dropped.
class QtMainThread {
public:
    QtMainThread();
    ~QtMainThread();
    QtMainThread(const QtMainThread&) = delete;
    QtMainThread& operator=(const QtMainThread&) = delete;

    // Returns the operations. They do nothing after this is destroyed.
    MainThread operations() const;

private:
    struct Mailbox;

    const std::shared_ptr<Mailbox> mailbox_;
};

}  // namespace tarnik
