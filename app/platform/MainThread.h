#pragma once

#include <functional>

#include "app/platform/RepeatingTimer.h"
#include "core/foundation/Time.h"

namespace tarnik {

// The main thread, as the shell sees it: where its state lives. Nobody ever waits for it.
struct MainThread {
    using Task = std::function<void()>;

    // Runs `task` there, soon, after what was posted before. From any thread; never runs it at once. What is
    // left when the program's loop ends is dropped.
    std::function<void(Task task)> post;

    // Runs `task` there every `interval` on the steady clock, the first time after one. After a sleep of the
    // machine once, not once for each that was missed. Main thread only.
    std::function<RepeatingTimer(Seconds interval, Task task)> repeat;
};

}  // namespace tarnik
