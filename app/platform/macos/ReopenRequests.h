#pragma once

#include <functional>
#include <memory>

namespace tarnik {

// Calls a handler when the user opens the running application again, for instance in the Finder. Handles the
// system's Apple event itself, because Qt reports AppKit's callback as an ordinary activation.
//
// Main thread only. Create it when the event loop runs, because AppKit installs its own handler when the loop
// starts.
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
