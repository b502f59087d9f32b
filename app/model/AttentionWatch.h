#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "app/model/HelperAbsence.h"
#include "app/model/TrayStatus.h"
#include "app/model/WindowContent.h"
#include "app/platform/MainThread.h"
#include "app/platform/UserDefaults.h"
#include "app/platform/UserNotices.h"
#include "core/foundation/CallbackGuard.h"

namespace tarnik {

// Asks for the user's attention outside of the window: keeps the status of the status item, and shows and
// withdraws the notices.
//
// from           event                                 to
// no problem     install fails                         problem; a notice, unless the window is open
// no problem     the helper is away for long           problem; a notice, unless the window is in use
// problem        it is over, or the program stops      no problem; the notice is withdrawn
// any            the user sees the window              same; all notices are withdrawn
//
// A problem has one notice, even if the window is closed again meanwhile. Sleeps until the time at which an
// absence of the helper becomes long or ends. Owned by DesktopFace. Main thread only.
class AttentionWatch {
public:
    struct Deps {
        MainThread mainThread;
        UserNotices notices = {};
        UserDefaults defaults = {};  // remembers that the first close was explained
        HelperAbsence::Limits limits = {};
        std::function<const AppState&()> state;
        std::function<bool()> windowIsOpen;        // on the screen; other windows may cover it
        std::function<bool()> windowIsInUse;       // it has the focus
        std::function<void(TrayStatus)> onStatus;  // called after each change of the status
        std::function<TimePoint()> now = steadyNow;
    };

    explicit AttentionWatch(Deps deps);
    ~AttentionWatch() = default;
    AttentionWatch(const AttentionWatch&) = delete;
    AttentionWatch& operator=(const AttentionWatch&) = delete;

    TrayStatus status() const { return status_; }

    // Returns true if a problem gets a notice while the window is closed.
    bool showsNotices() const;

    void stateChanged();
    void windowSeen();  // the window was shown, restored or activated

    // Explains the first close of the window with a notice, once and for all runs.
    void windowClosed(WindowSetting::Closing closing);

private:
    enum class Problem { installFailed, helperAway };

    static std::optional<Problem> problemIn(const AppState& state, AbsenceLength absence);
    void arm(TimePoint now);
    void setProblem(std::optional<Problem> problem);
    bool isSeen(Problem problem) const;
    void showProblem();
    void withdraw(std::string_view id) const;

    const Deps deps_;
    HelperAbsence absence_;
    TrayStatus status_;
    std::optional<Problem> problem_;
    std::optional<TimePoint> wakeAt_;
    std::optional<RepeatingTimer> timer_;  // fires once, at wakeAt_
    const CallbackGuard guard_;
};

}  // namespace tarnik
