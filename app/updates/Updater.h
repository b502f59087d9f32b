#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/bundle/BundleInfo.h"
#include "app/platform/MainThread.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UpdateFramework.h"
#include "core/foundation/CallbackGuard.h"
#include "core/updates/UpdateLoop.h"

namespace tarnik {

// Delays the installation of a downloaded update until the first quiet moment, or until the user asks for it.
// If the program quits first, the framework installs the update itself.
//
// Owned by AppDelegate, one per run. Main thread only. Does nothing without complete settings or without a
// framework. May be destroyed from inside an install operation.
class Updater {
public:
    // Takes a sample and calls `done` with it, on the main thread.
    using SampleSource = std::function<void(std::function<void(ActivitySample)> done)>;

    struct Deps {
        UpdateFramework framework;
        MainThread mainThread;
        SystemLog log;  // the channel "updater"
        std::function<TimePoint()> now = steadyNow;
    };

    // Upper bound for a sample. A later answer is ignored, and the next sample is taken.
    static constexpr Seconds longestLook{300};

    // Starts the framework, which checks for updates and downloads them on its own.
    Updater(const UpdateSettings& settings, Deps deps);
    ~Updater() = default;
    Updater(const Updater&) = delete;
    Updater& operator=(const Updater&) = delete;

    // Returns true if the menu can offer to check for updates.
    bool isAvailable() const { return controller_.has_value(); }

    // Before a source is set, no moment counts as quiet.
    void setSampleSource(SampleSource sample) { sample_ = std::move(sample); }

    // Installs the waiting update, or asks the framework to check for one.
    void checkForUpdates();

    // Disables all later installs by this object.
    void appWillQuit();

private:
    struct Look {
        std::uint64_t number = 0;
        TimePoint since;
    };

    void updateReady(const std::string& version, UpdateFramework::Install install);
    void look();
    void looked(std::uint64_t number, const ActivitySample& sample);
    void install();

    const Deps deps_;
    std::optional<UpdateFramework::Controller> controller_;
    SampleSource sample_;
    UpdateFramework::Install install_;  // of the waiting update
    UpdateLoop loop_;
    std::optional<RepeatingTimer> timer_;
    std::optional<Look> looking_;
    std::uint64_t looks_ = 0;
    const CallbackGuard guard_;
};

}  // namespace tarnik
