#include "core/updates/ActivitySample.h"

namespace tarnik {

ActivitySample::Moment ActivitySample::Moment::now() {
    return {.steady = steadyNow(), .process = ProcessClock::now()};
}

}  // namespace tarnik
