#include "app/relocation/Pause.h"

#include <condition_variable>
#include <memory>
#include <mutex>

namespace tarnik {

Pause Pause::production() {
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        bool cut = false;
    };
    const auto state = std::make_shared<State>();
    return {.sleep =
                [state](Seconds time) {
                    std::unique_lock lock(state->mutex);
                    state->changed.wait_until(lock, after(steadyNow(), time), [&] { return state->cut; });
                },
            .cut =
                [state] {
                    const std::lock_guard lock(state->mutex);
                    state->cut = true;
                    state->changed.notify_all();
                }};
}

}  // namespace tarnik
