#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tarnik {

// Ensures that only one instance of the program runs per user. Main thread only. The operations are absent if
// the platform prevents a second instance by other means.
struct SingleInstance {
    // The request that a second instance passes to the running instance.
    struct LaunchRequest {
        std::optional<std::string> link;
        bool wantsWindow = true;  // ignored if `link` is set
    };

    enum class Outcome {
        primary,      // this instance continues
        handedOver,   // another instance took the request; this instance must exit
        unavailable,  // no check was possible; this instance continues and prints a message
    };

    // Call it once, before the event loop runs. Blocks for a limited time while another instance replies or
    // exits. If this instance continues, SystemEvents::onLink delivers its link and the links of later
    // instances.
    std::function<Outcome(const LaunchRequest& request)> acquire;

    // Rejects later requests, because the program is about to exit. A later instance waits for the exit.
    std::function<void()> refuseRequests;
};

}  // namespace tarnik
