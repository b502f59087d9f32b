#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/control/RunHistory.h"
#include "app/journal/Journal.h"
#include "app/model/AppModel.h"
#include "app/platform/BackgroundTasks.h"
#include "app/platform/MainThread.h"
#include "core/foundation/CallbackGuard.h"

namespace tarnik {

// Derives facts for the faces from the events of the journal, and passes them to the model: since when the
// helper runs, its version, why it fails, its last lines, and whether an update waits.
//
// Owned by Application. Main thread only; events may be recorded on any thread. Reads files in the
// background: the helper's log once for each of its failures from the second one on.
class JournalFacts {
public:
    struct Deps {
        MainThread mainThread;
        std::function<bool(const std::string& label, BackgroundTasks::Task task)> detach;

        std::function<std::string()> installedVersion;  // of the helper; empty if unknown; blocks
        std::function<std::string()> lastLines;         // of the helper's log; blocks

        // Reads the home and the log of the model.
        static Deps production(const AppModel& model, MainThread mainThread, const BackgroundTasks& tasks);
    };

    // A helper's last output reaches its log shortly after its exit.
    static constexpr Seconds logDelay = Seconds(0.25);

    JournalFacts(Deps deps, const std::shared_ptr<Journal>& journal, const std::shared_ptr<AppModel>& model);
    ~JournalFacts() = default;
    JournalFacts(const JournalFacts&) = delete;
    JournalFacts& operator=(const JournalFacts&) = delete;

    void setChecksForUpdates(bool checks);

private:
    void apply(const JournalEvent& event);
    void applyToHelper(const JournalEvent& event, const Journal& journal);
    void readVersion();
    void readLastLines();
    void endTrouble();
    void publish() const;

    const Deps deps_;
    const std::weak_ptr<const Journal> journal_;
    const std::weak_ptr<AppModel> model_;
    RunHistory history_;
    AppFacts facts_;
    std::optional<RepeatingTimer> logTimer_;     // fires once, like the next one
    std::optional<RepeatingTimer> healthTimer_;  // ends the trouble of a helper that runs again
    bool isReading_ = false;                     // the log
    bool isOutdated_ = false;                    // the read began before the latest failure
    const CallbackGuard guard_;
};

}  // namespace tarnik
