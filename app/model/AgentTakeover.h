#pragma once

#include <string>

#include "app/platform/SystemLog.h"
#include "core/node/LaunchdTakeover.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Ends the launchd agent of a helper that was installed from the command line. A value, used on a background
// thread.
struct AgentTakeover {
    NodeHome home;
    std::string userFolder;
    LaunchdTakeover::Deps launchd;
    SystemLog log;  // receives the outcome; failures are only logged

    // Returns false if there is no agent, so that run() is not needed.
    bool isNeeded() const;

    // Blocks while launchctl runs, for more than half a minute at worst.
    void run() const;
};

}  // namespace tarnik
