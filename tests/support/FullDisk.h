#pragma once

#include <csignal>

#include <sys/resource.h>

namespace tarnik {

// While it lives, no file of this program grows beyond `bytes`.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const struct rlimit full = {.rlim_cur = bytes, .rlim_max = before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        ::signal(SIGXFSZ, handler_);
    }

private:
    struct rlimit before_ = {};
    void (*const handler_)(int) = ::signal(SIGXFSZ, SIG_IGN);
};

}  // namespace tarnik
