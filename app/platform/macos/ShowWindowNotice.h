#pragma once

#include <functional>

namespace tarnik {

// Observes the distributed notification with which a second copy of the application asks the running one to
// show its window. Any program of the user can post it, so the handler must be harmless.
//
// Main thread, the handler included.
class ShowWindowNotice {
public:
    explicit ShowWindowNotice(std::function<void()> handler);
    ~ShowWindowNotice();
    ShowWindowNotice(const ShowWindowNotice&) = delete;
    ShowWindowNotice& operator=(const ShowWindowNotice&) = delete;

    static void post();  // call from any thread

private:
    const std::function<void()> handler_;
};

}  // namespace tarnik
