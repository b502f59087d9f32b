#pragma once

#include <functional>
#include <string>

namespace tarnik {

// A notice as the desktop shows it. Both texts are plain.
struct UserNotice {
    std::string title;
    std::string body;
};

// The notices that the desktop shows outside of our window. Main thread only. No operation blocks. A failure
// is ignored. All operations are absent if the desktop shows no notices.
struct UserNotices {
    // Returns true if show() is expected to reach the user.
    std::function<bool()> canShow;

    // Shows the notice, and replaces the earlier notice with the same `id`.
    std::function<void(const std::string& id, const UserNotice& notice)> show;

    // Removes the notice. Does nothing if it isn't shown.
    std::function<void(const std::string& id)> withdraw;

    // Registers a handler. The handler runs on the main thread when the user clicks on a notice.
    std::function<void(std::function<void()>)> onClick;
};

}  // namespace tarnik
