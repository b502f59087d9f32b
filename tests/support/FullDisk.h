#pragma once

#include <csignal>

#include <sys/resource.h>

namespace tarnik {

// Runs the action while no file can grow beyond `bytes`, like on a full disk.
void onFullDisk(rlim_t bytes, auto action) {
    struct rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const struct rlimit full = {.rlim_cur = bytes, .rlim_max = before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &full);
    action();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
}

}  // namespace tarnik
