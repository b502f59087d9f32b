#pragma once

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>

namespace tarnik {

// The resources of this process that a faulty spawner leaks.
struct ProcessCounts {
    std::ptrdiff_t descriptors = 0;
    std::ptrdiff_t threads = 0;  // 0 where the system has no /proc
    bool children = false;       // running or waiting to be reaped

    // Call this before the test's first thread: a sanitizer starts its own thread with that.
    static ProcessCounts baseline() {
        std::thread([] {}).join();
        return now();
    }

    static ProcessCounts now() {
        siginfo_t ignored{};
        return {
            .descriptors = entries("/dev/fd"),
            .threads = entries("/proc/self/task"),
            .children = ::waitid(P_ALL, 0, &ignored, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD};
    }

    bool holdsNoMoreThan(const ProcessCounts& before) const {
        return descriptors <= before.descriptors && threads <= before.threads && children <= before.children;
    }

    friend std::ostream& operator<<(std::ostream& out, const ProcessCounts& counts) {
        return out << counts.descriptors << " descriptors, " << counts.threads << " threads, "
                   << (counts.children ? "with" : "no") << " children";
    }

private:
    static std::ptrdiff_t entries(const char* folder) {
        std::error_code ignored;
        return std::distance(std::filesystem::directory_iterator(folder, ignored), {});
    }
};

}  // namespace tarnik
