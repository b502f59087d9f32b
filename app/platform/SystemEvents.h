#pragma once

#include <functional>
#include <string>

namespace tarnik {

// What the system tells the application. Each operation registers one handler for the rest of the run, which
// is called on the main thread.
struct SystemEvents {
    // A link of our scheme was opened, maybe the one that the application was started for.
    std::function<void(std::function<void(const std::string& link)>)> onLink;

    // A second copy was started, found us and has ended.
    std::function<void(std::function<void()>)> onSecondOpen;

    // The person opened the application while it runs; absent where that starts a second copy. Only once the
    // program's loop runs.
    std::function<void(std::function<void()>)> onReopen;

    // The person has come to the application.
    std::function<void(std::function<void()>)> onBecameActive;
};

}  // namespace tarnik
