#pragma once

#include <expected>
#include <functional>
#include <string>

namespace tarnik {

// The system's update framework. It finds, downloads, verifies and installs updates. It shows windows for the
// checks that the user starts. Operations and callbacks run on the main thread only.
struct UpdateFramework {
    // Installs the update now and restarts the program. The framework sends a normal quit request, perhaps
    // before this operation returns.
    using Install = std::function<void()>;

    // Called when a downloaded update is ready to be installed on quit. `version` is for display. Return true
    // to call `install` earlier. May be called again for the same update.
    using WillInstallOnQuit = std::function<bool(const std::string& version, Install install)>;

    // The updater of this run. Its copies share one object.
    struct Controller {
        // Starts the updater without an alert. Returns the framework's reason if it can't start.
        std::function<std::expected<void, std::string>()> start;
        std::function<void(bool)> setAutomaticallyChecks;     // for this run and later runs
        std::function<void(bool)> setAutomaticallyDownloads;  // for this run and later runs
        std::function<void()> checkForUpdates;   // starts a check with the framework's own windows
        std::function<void()> showStartFailure;  // starts the updater again; an alert shows a failure
    };

    // Returns a controller that is not started. Absent if the build has no update framework.
    std::function<Controller(WillInstallOnQuit handler)> makeController;
};

}  // namespace tarnik
