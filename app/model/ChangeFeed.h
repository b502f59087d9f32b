#pragma once

#include <functional>
#include <memory>

#include "app/model/AppModel.h"
#include "app/platform/MainThread.h"
#include "core/foundation/CallbackGuard.h"

namespace tarnik {

// Reports changes of the model to a view. Merges the changes that precede a report. Main thread only.
class ChangeFeed {
public:
    // A change posts a task that calls `onChange` with the state at that time. The owner keeps `model` alive.
    ChangeFeed(const std::shared_ptr<AppModel>& model, MainThread mainThread,
               std::function<void(const AppState&)> onChange);
    ~ChangeFeed() = default;
    ChangeFeed(const ChangeFeed&) = delete;
    ChangeFeed& operator=(const ChangeFeed&) = delete;

private:
    void post();

    const AppModel& model_;
    const MainThread mainThread_;
    const std::function<void(const AppState&)> onChange_;
    bool posted_ = false;
    const CallbackGuard guard_;
};

}  // namespace tarnik
