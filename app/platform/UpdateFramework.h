#pragma once

#include <functional>
#include <string>

namespace tarnik {

// The system's update framework: it looks for new versions, downloads, checks and installs them, and talks to
// the person about those that the person asked for. Main thread, callbacks too.
struct UpdateFramework {
    // Installs the update at once and starts the program anew. The program is told to quit in the ordinary
    // way, perhaps before this returns.
    using Install = std::function<void()>;

    // An update was downloaded and goes in when the program quits; `version` is for people. Whether we choose
    // a moment before that. May come again, for the same update too.
    using WillInstallOnQuit = std::function<bool(const std::string& version, Install install)>;

    // One per run. It goes with its last copy.
    struct Controller {
        std::function<void()> start;
        std::function<void()> setAutomaticallyChecks;     // to true; remembered for the next run
        std::function<void()> setAutomaticallyDownloads;  // the same
        std::function<void()> checkForUpdates;            // now, with the framework's own windows
    };

    // Doesn't start it. The operation is absent on a system without such a framework.
    std::function<Controller(WillInstallOnQuit handler)> makeController;
};

}  // namespace tarnik
