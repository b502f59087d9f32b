#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tarnik {

// Makes sure that one instance of the program runs per user. Main thread. The operations are absent if the
// system ensures that itself.
struct SingleInstance {
    // The request that a second instance hands to the running one.
    struct LaunchRequest {
        std::optional<std::string> link;
        bool wantsWindow = true;  // ignored if there is a link
    };

    enum class Outcome {
        primary,      // this instance continues
        handedOver,   // another instance took the request, and this one must exit
        unavailable,  // no check was possible; this instance continues and reports it
    };

    // Call it once, before the event loop runs. Blocks, with a bound, while another instance answers or ends.
    // If this instance continues, its link arrives through SystemEvents::onLink, like the links of later
    // instances.
    std::function<Outcome(const LaunchRequest& request)> acquire;

    // Rejects requests from now on, because the program is about to end. A later instance waits for that end.
    std::function<void()> refuseRequests;
};

}  // namespace tarnik
