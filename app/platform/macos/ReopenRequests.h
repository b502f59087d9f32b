#pragma once

#include <functional>
#include <memory>

namespace tarnik {

// The person opens the application in the Finder while it runs. Qt takes AppKit's own word for it as one more
// activation, so the system's event itself is listened for.
//
// Main thread, once the program's loop runs: AppKit puts its own handler in place when the loop begins.
class ReopenRequests {
public:
    explicit ReopenRequests(std::function<void()> handler);
    ~ReopenRequests();
    ReopenRequests(const ReopenRequests&) = delete;
    ReopenRequests& operator=(const ReopenRequests&) = delete;

private:
    struct Receiver;
    const std::unique_ptr<Receiver> receiver_;
};

}  // namespace tarnik
