#include "app/relocation/InterruptibleSleep.h"

#include <condition_variable>
#include <memory>
#include <mutex>

namespace tarnik {

InterruptibleSleep InterruptibleSleep::production() {
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        bool interrupted = false;
    };
    const auto state = std::make_shared<State>();
    return {.sleep =
                [state](Seconds time) {
                    std::unique_lock lock(state->mutex);
                    state->changed.wait_until(lock, after(steadyNow(), time),
                                              [&] { return state->interrupted; });
                },
            .interrupt =
                [state] {
                    const std::lock_guard lock(state->mutex);
                    state->interrupted = true;
                    state->changed.notify_all();
                }};
}

}  // namespace tarnik
