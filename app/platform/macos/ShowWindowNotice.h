#pragma once

#include <functional>

namespace tarnik {

// The distributed notification by which a second copy of the application asks the one that runs to show its
// window. Any program of the person can post it, so it is no more than a wish.
//
// Hears it for as long as it lives. Main thread, the handler too.
class ShowWindowNotice {
public:
    explicit ShowWindowNotice(std::function<void()> handler);
    ~ShowWindowNotice();
    ShowWindowNotice(const ShowWindowNotice&) = delete;
    ShowWindowNotice& operator=(const ShowWindowNotice&) = delete;

    static void post();  // from any thread

private:
    const std::function<void()> handler_;
};

}  // namespace tarnik
