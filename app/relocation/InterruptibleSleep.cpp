#include "app/relocation/InterruptibleSleep.h"

#include <memory>

#include "core/foundation/Mutex.h"

namespace tarnik {

InterruptibleSleep InterruptibleSleep::production() {
    struct State {
        Mutex mutex;
        Condition changed;
        bool interrupted TARNIK_GUARDED_BY(mutex) = false;
    };
    const auto state = std::make_shared<State>();
    return {.sleep =
                [state](Seconds time) {
                    const TimePoint deadline = after(steadyNow(), time);
                    MutexLock lock(state->mutex);
                    while (!state->interrupted && state->changed.waitUntil(lock, deadline)) {}
                },
            .interrupt =
                [state] {
                    const MutexLock lock(state->mutex);
                    state->interrupted = true;
                    state->changed.notifyAll();
                }};
}

}  // namespace tarnik
