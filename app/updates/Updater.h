#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/model/UpdateSettings.h"
#include "app/platform/MainThread.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UpdateFramework.h"
#include "core/updates/UpdateLoop.h"

namespace tarnik {

// Holds back the updates that the framework has downloaded, and installs one at the first quiet moment or
// when the person asks for it. One that still waits when the program quits the framework installs itself.
//
// Owned by AppDelegate, one per run. Main thread only. Without complete settings or a framework it does
// nothing. May go from inside an install operation, and what answers later finds nobody.
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

    // A sample that takes longer is lost: the next may be asked for, and its answer isn't heard any more.
    static constexpr Seconds longestLook{300};

    // Starts the framework, which looks for updates and downloads them by itself from now on.
    Updater(const UpdateSettings& settings, Deps deps);
    ~Updater() = default;
    Updater(const Updater&) = delete;
    Updater& operator=(const Updater&) = delete;

    // Whether the person can be offered to check for updates.
    bool isAvailable() const { return controller_.has_value(); }

    // Without a source no moment is known to be quiet.
    void setSampleSource(SampleSource sample) { sample_ = std::move(sample); }

    // The person chose to; installs the update that waits, if one does.
    void checkForUpdates();

    // Nothing is installed from here any more.
    void appWillQuit();

private:
    struct Look {
        std::uint64_t number = 0;
        TimePoint since;
    };
    struct Token {};

    void updateReady(const std::string& version, UpdateFramework::Install install);
    void look();
    void looked(std::uint64_t number, const ActivitySample& sample);
    void install();

    const Deps deps_;
    std::optional<UpdateFramework::Controller> controller_;
    SampleSource sample_;
    UpdateFramework::Install install_;  // of the update that waits
    UpdateLoop loop_;
    std::optional<RepeatingTimer> timer_;
    std::optional<Look> looking_;
    std::uint64_t looks_ = 0;
    // Lets callbacks see whether we are there still.
    const std::shared_ptr<Token> alive_ = std::make_shared<Token>();
};

}  // namespace tarnik
