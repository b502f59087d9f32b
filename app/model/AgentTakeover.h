#pragma once

#include <string>

#include "app/platform/SystemLog.h"
#include "core/node/LaunchdTakeover.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Ends an agent that a command-line install of the helper left behind. A value, used on a background thread.
struct AgentTakeover {
    NodeHome home;
    std::string userFolder;
    LaunchdTakeover::Deps launchd;
    SystemLog log;  // receives the outcome; a failure stops nothing

    // Returns false if there is no agent at all, so that nothing has to be waited for.
    bool isNeeded() const;

    // Blocks for as long as launchctl takes, half a minute and more at worst.
    void run() const;
};

}  // namespace tarnik
