#pragma once

#include <string>

#include "app/platform/SystemLog.h"
#include "core/node/LaunchdTakeover.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Removes the launchd agent that a command-line install of the helper registered, if the agent runs the same
// node home. A value. Call run() on a background thread.
struct AgentTakeover {
    NodeHome home;
    std::string userFolder;
    LaunchdTakeover::Deps launchd;
    SystemLog log;  // receives the outcome and failures

    // Returns true if the agent's file exists. Otherwise run() changes nothing.
    bool isNeeded() const;

    // Blocks for up to 60 s, because launchctl runs twice.
    void run() const;
};

}  // namespace tarnik
