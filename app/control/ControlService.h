#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/control/ControlHandler.h"
#include "app/control/ControlServer.h"
#include "app/control/StatusSource.h"
#include "app/journal/Journal.h"
#include "app/model/AppModel.h"
#include "app/platform/BackgroundTasks.h"
#include "app/platform/SystemLog.h"

namespace tarnik {

// Lets other programs of the user ask and control this one: starts the server of the control socket and
// executes its requests on the main thread.
//
// Owned by Application, one per run. Main thread only. Destroy it before the model.
class ControlService {
public:
    struct Deps {
        MainThread mainThread;
        SystemLog log;
        std::shared_ptr<Journal> journal;
        std::vector<std::string> folders;  // see ControlFolder
        StatusSource source;               // the constructor adds `events`, `history` and `helperVersion`
        std::function<void()> openWindow;
        std::function<void()> quit;
        // Runs a task on a thread of its own. Returns false if the system can't create one.
        std::function<bool(const std::string& label, BackgroundTasks::Task task)> detach;
    };

    // If no socket can be opened, logs that and does nothing else.
    ControlService(Deps deps, const std::shared_ptr<AppModel>& model);
    ~ControlService();
    ControlService(const ControlService&) = delete;
    ControlService& operator=(const ControlService&) = delete;

private:
    void followJournal();
    void readHelperVersion();

    const Deps deps_;
    StatusSource source_;
    RunHistory history_;
    const std::optional<NodeHome> home_;
    std::optional<std::string> helperVersion_;  // read at the start and after each install
    ControlHandler handler_;
    std::unique_ptr<ControlServer> server_;  // null if no socket could be opened
    const CallbackGuard guard_;
};

}  // namespace tarnik
