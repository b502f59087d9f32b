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
#include "app/policy/Policy.h"
#include "core/foundation/CallbackGuard.h"
#include "core/updates/UpdateLoop.h"

namespace tarnik {

// Delays the installation of a downloaded update until the first quiet moment, or until the user chooses to
// check for updates. If the program quits first, the framework installs the update.
//
// Owned by AppDelegate, one per run. Main thread only. Does nothing if the settings are incomplete or no
// framework exists. May be destroyed from inside an install operation.
class Updater {
public:
    // Takes a sample and passes it to `done` on the main thread.
    using SampleSource = std::function<void(std::function<void(ActivitySample)> done)>;

    struct Deps {
        UpdateFramework framework;
        MainThread mainThread;
        SystemLog log;  // the channel "updater"
        std::function<TimePoint()> now = steadyNow;
        std::function<int()> hour = &localHour;              // of the day
        std::optional<PolicySetting<UpdateRule>> rule = {};  // the organisation's setting
    };

    // Returns the present hour of the day in the local time zone.
    static int localHour();

    // The time limit for a sample. Afterwards a new sample is taken, and a late answer is ignored.
    static constexpr Seconds longestLook{300};

    // Starts the framework. The framework then checks for updates and downloads them, unless the organisation
    // forbids it. A rule that is forced and forbids all updates leaves this object without a framework.
    Updater(const UpdateSettings& settings, Deps deps);
    ~Updater() = default;
    Updater(const Updater&) = delete;
    Updater& operator=(const Updater&) = delete;

    // Returns true if the framework exists and may be used.
    bool isAvailable() const { return controller_.has_value(); }

    // Returns true if updates are found and installed without the user.
    bool isAutomatic() const { return isAvailable() && !isRule(UpdateRule::Kind::never); }

    // Returns true if the menu offers to check for updates. A forced window of hours withdraws the offer,
    // because the user would install an update outside the window.
    bool offersCheck() const {
        return isAvailable() && !(isRule(UpdateRule::Kind::window) && deps_.rule->isForced());
    }

    // Without a source, no moment counts as quiet.
    void setSampleSource(SampleSource sample) { sample_ = std::move(sample); }

    // Installs the waiting update, or asks the framework to check for one. Starts the framework again if it
    // could not start before, and shows the framework's reason if it still can't. Ignored if offersCheck()
    // returns false.
    void checkForUpdates();

    // Stops the sampling and disables all later installs by this object.
    void appWillQuit();

private:
    struct Look {
        std::uint64_t number = 0;
        TimePoint since;
    };

    bool startFramework();
    bool isRule(UpdateRule::Kind kind) const { return deps_.rule && deps_.rule->value.kind == kind; }
    void updateReady(const std::string& version, UpdateFramework::Install install);
    void look();
    void looked(std::uint64_t number, const ActivitySample& sample);
    void install();

    const Deps deps_;
    std::optional<UpdateFramework::Controller> controller_;
    bool hasStarted_ = false;
    SampleSource sample_;
    UpdateFramework::Install install_;  // installs the waiting update; empty if no update waits
    UpdateLoop loop_;
    std::optional<RepeatingTimer> timer_;
    std::optional<Look> looking_;
    std::uint64_t looks_ = 0;
    const CallbackGuard guard_;
};

}  // namespace tarnik
