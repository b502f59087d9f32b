#pragma once

#include <functional>

namespace tarnik {

// The system's list of programs that start at login. The operations are absent if the system has no list.
// They may block for seconds, so call them on a background thread.
struct LoginItemService {
    std::function<bool()> isEnabled;     // returns true if the application is on the list and enabled
    std::function<bool()> registerItem;  // adds the application; returns true on success
};

}  // namespace tarnik
