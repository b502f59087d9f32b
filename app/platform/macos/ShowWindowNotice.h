#pragma once

#include <functional>

namespace tarnik {

// Observes the distributed notification by which a second copy of the application asks the running copy to
// show its window. Any program of the user can post the notification, so the handler must be harmless.
//
// Main thread only. The handler also runs on the main thread.
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
