#pragma once

#include <functional>
#include <memory>

#include "app/model/AppModel.h"
#include "app/platform/MainThread.h"

namespace tarnik {

// Tells a view of the model's changes: once for many that come in a row, after the last of them. Main
// thread.
class ChangeFeed {
public:
    // `onChange` runs on the main thread, and no more once this is gone.
    ChangeFeed(const std::shared_ptr<AppModel>& model, MainThread mainThread,
               std::function<void(const AppState&)> onChange);

private:
    struct Pending {
        std::function<void(const AppState&)> onChange;
        bool posted = false;
    };

    const std::shared_ptr<Pending> pending_;
};

}  // namespace tarnik
