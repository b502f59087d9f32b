#pragma once

#include "core/process/Environment.h"

namespace tarnik {

// Ends the busy pointer that a desktop shows from the click on a program until its first window, where this
// program shows none. Nothing happens where a window was shown, or where no desktop waits for one. Main
// thread.
//
// Only X11 needs it: on Wayland the pointer goes with the click's token, which another copy takes.
void endStartupNotification(const Environment& environment);

}  // namespace tarnik
