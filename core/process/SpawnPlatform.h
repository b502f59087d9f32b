#pragma once

#include <chrono>

#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/types.h>

// System calls for starting children that differ between systems.
namespace tarnik {

// A program that was just written can't be run while a child of another thread, which hasn't reached its own
// exec, holds the file open for writing (ETXTBSY). That lasts only a moment, so the start is retried up to
// this many times.
inline constexpr int busyRetries = 50;
inline constexpr std::chrono::milliseconds busyPause(10);

// Makes the child close all descriptors but the standard ones, by an addition to `actions` or `flags`. Call
// it after the actions that set the standard descriptors. Returns 0 or an errno value.
int closeAllOthers(posix_spawn_file_actions_t& actions, short& flags);

// Opens a pipe(2) with both ends close-on-exec. Returns 0 or an errno value.
int openPipe(int (&ends)[2]);

// forkpty(3), which systems declare in different headers. Returns the child's pid and stores the controlling
// side in `master`; returns 0 in the child, -1 with errno set on failure.
pid_t forkOnTerminal(int& master, winsize& size);

}  // namespace tarnik
