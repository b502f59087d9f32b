#pragma once

#include <functional>
#include <string>

namespace tarnik {

// Notifications from the system. Each operation registers one handler for the rest of the run. Handlers run
// on the main thread.
struct SystemEvents {
    // A link with our scheme was opened. It may be the link that started the application.
    std::function<void(std::function<void(const std::string& link)>)> onLink;

    // A second instance started, found this instance and ended.
    std::function<void(std::function<void()>)> onSecondOpen;

    // The user opened the running application again. Absent if the system starts a second instance instead.
    // Register the handler only when the event loop runs.
    std::function<void(std::function<void()>)> onReopen;

    // The application became active.
    std::function<void(std::function<void()>)> onBecameActive;
};

}  // namespace tarnik
