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

    // Call it once, before the event loop runs. Blocks for a limited time while another instance replies or
    // exits. If this instance continues, its link arrives through SystemEvents::onLink, like the links of
    // later instances.
    std::function<Outcome(const LaunchRequest& request)> acquire;

    // Rejects later requests, because the program is about to exit. A later instance waits for the exit.
    std::function<void()> refuseRequests;
};

}  // namespace tarnik
