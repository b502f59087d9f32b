#include "app/platform/BackgroundTasks.h"

#include <system_error>
#include <thread>
#include <utility>

#include "core/foundation/ThreadName.h"

namespace tarnik {

bool BackgroundTasks::start(const std::string& label, Task task) const {
    ++*running_;
    try {
        std::thread([running = running_, label, task = std::move(task)]() mutable {
            setThreadName(label);
            task();
            task = nullptr;
            --*running;
        }).detach();
    } catch (const std::system_error&) {
        --*running_;
        return false;
    }
    return true;
}

}  // namespace tarnik
