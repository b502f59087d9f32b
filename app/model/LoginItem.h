#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/platform/BackgroundTasks.h"
#include "app/platform/LoginItemService.h"
#include "app/platform/MainThread.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UserDefaults.h"
#include "app/policy/Policy.h"
#include "core/foundation/CallbackGuard.h"

namespace tarnik {

// Adds the program to the system's list of programs that start at login, and carries out the user's choice.
//
// Owned by AppModel. Main thread only. No operation blocks. At most one background task uses the list at a
// time. Requests that arrive meanwhile are merged, and the latest choice counts.
class LoginItem {
public:
    struct State {
        std::optional<LoginItemState> system;  // std::nullopt if not yet known, and always without a list
        std::optional<std::string> failure;    // the system's message after a choice that had no effect
        bool operator==(const State&) const = default;
    };

    struct Deps {
        LoginItemService service;
        UserDefaults defaults;
        std::function<void(MainThread::Task)> post;
        std::function<bool(const std::string& label, BackgroundTasks::Task task)> detach;
        SystemLog log;
        std::optional<PolicySetting<bool>> managed = {};  // the organisation's setting
        std::function<void(const State&)> onState;
    };

    explicit LoginItem(Deps deps);

    // Returns true if the launch adds the program. `turnedOff` is true if the user's last choice was off.
    static bool isAddedAtLaunch(LoginItemState system, bool turnedOff);

    // Adds the program at launch, unless it is on the list or the user has turned it off. With a setting of
    // the organisation: a default of "off" adds nothing, and a forced value is carried out at each launch.
    // Ignores a failure, but for a line in the log if a value is forced; the next launch tries again.
    void ensureRegistered();
    // Reads the list and dismisses the failure. Call when the user may have changed the list.
    void refresh();
    // Remembers and carries out the user's choice. Ignored if the organisation forces a value. While the
    // system waits for the user, `on` opens the system's settings instead.
    void choose(LoginItemChoice choice);
    void dismissFailure();

private:
    // The work of one background task. Reads the list at its end.
    struct Work {
        bool registers = false;
        std::optional<LoginItemChoice> choice = {};
        std::optional<LoginItemChoice> forced = {};  // by the organisation
    };

    static State perform(const LoginItemService& service, const Work& work);
    void request(const Work& more);
    void startWork();
    void ended(const Work& work, State state);
    void change(const State& state);

    const Deps deps_;
    State state_;
    std::optional<Work> next_;
    bool working_ = false;
    const CallbackGuard guard_;
};

}  // namespace tarnik
