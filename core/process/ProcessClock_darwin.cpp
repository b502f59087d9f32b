#include "core/process/ProcessClock.h"

namespace tarnik {

ProcessTime ProcessClock::now() {
    return ProcessTime(std::chrono::system_clock::now().time_since_epoch());
}

}  // namespace tarnik
