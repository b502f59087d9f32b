#pragma once

#include <csignal>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace tarnik {

// A forked child that runs `body`, which must be async-signal-safe. The destructor ends it.
class ForkedChild {
public:
    template <class Body>
    explicit ForkedChild(Body body) : pid_(::fork()) {
        if (pid_ < 0) throw std::runtime_error("no child");
        if (pid_ != 0) return;
        ::alarm(120);  // ends a child that its test lost
        body();
        ::_exit(0);
    }
    ForkedChild(ForkedChild&& other) noexcept : pid_(other.pid_) { other.pid_ = 0; }
    ~ForkedChild() {
        if (pid_ == 0) return;
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }

    pid_t pid() const { return pid_; }

    static ForkedChild waiting() {
        return ForkedChild([] {
            while (true) ::pause();
        });
    }

private:
    pid_t pid_;
};

}  // namespace tarnik
