#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tarnik {

// Sees to it that one copy of the program runs for a person. Main thread. The operations are absent where the
// system does that by itself.
struct SingleInstance {
    // What a start brings to the copy that runs.
    struct LaunchRequest {
        std::optional<std::string> link;
        bool wantsWindow = true;  // of that copy; without a link only, which brings it up anyway
    };

    enum class Outcome {
        primary,      // the program goes on
        handedOver,   // another copy runs and knows what we wanted of it: we must end
        unavailable,  // nobody could be asked; the program goes on, and says so
    };

    // Before the program's loop runs, once. Blocks for as long as another copy takes to answer, or to end
    // when it is about to: bounded. Where we go on, the link comes to SystemEvents::onLink, as those of later
    // starts do, once.
    std::function<Outcome(const LaunchRequest& request)> acquire;

    // The program is about to end: what a later start hands over is refused, and that start waits.
    std::function<void()> refuseRequests;
};

}  // namespace tarnik
