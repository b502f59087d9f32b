#include "core/process/PtyPlatform.h"

#include <pty.h>

namespace tarnik {

pid_t forkOnTerminal(int& master, winsize& size) {
    return ::forkpty(&master, nullptr, nullptr, &size);
}

}  // namespace tarnik
