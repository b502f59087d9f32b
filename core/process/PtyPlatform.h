#pragma once

#include <sys/ioctl.h>
#include <sys/types.h>

namespace tarnik {

// forkpty(3), which systems declare in different places: the child's pid and the controlling side in
// `master`, 0 in the child, -1 with errno set.
pid_t forkOnTerminal(int& master, winsize& size);

}  // namespace tarnik
