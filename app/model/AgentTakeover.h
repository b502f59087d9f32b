#pragma once

#include <string>

#include "app/platform/SystemLog.h"
#include "core/node/LaunchdTakeover.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Removes the launchd agent of a helper that was installed from the command line. A value; run() is called on
// a background thread.
struct AgentTakeover {
    NodeHome home;
    std::string userFolder;
    LaunchdTakeover::Deps launchd;
    SystemLog log;  // receives the outcome and failures

    // Returns false if there is no agent. Then run() is not needed.
    bool isNeeded() const;

    // Blocks while launchctl runs twice, with a time-out of 30 s each.
    void run() const;
};

}  // namespace tarnik
