#pragma once

#include <functional>
#include <memory>

#include "app/platform/MainThread.h"

namespace tarnik {

class AppModel;

// What callbacks of longer-lived things hold in place of the model.
struct WeakModel {
    std::weak_ptr<AppModel> model;  // only ever locked on the main thread, so that the model ends there
    std::function<void(MainThread::Task)> post;

    // Runs `task` on the main thread with the model, or not at all once that is gone. From any thread.
    void run(std::function<void(AppModel&)> task) const;
};

}  // namespace tarnik
