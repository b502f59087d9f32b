#pragma once

#include "app/platform/MainThread.h"

namespace tarnik {

// The loop of the application object, which exists, as the shell sees it. What is posted after that object
// has gone is dropped.
MainThread qtMainThread();

}  // namespace tarnik
