#pragma once

#include "app/Application.h"

namespace tarnik {

// Returns the operations for a program without a window: it stores no preferences, gets no events of a
// desktop, is never moved, and has no login item.
Application::Platform headlessPlatform(const MainThread& mainThread, const SwitchOperations& switches,
                                       const SystemLog& log);

}  // namespace tarnik
