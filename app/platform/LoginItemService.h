#pragma once

#include <functional>

namespace tarnik {

// The system's list of programs that start at login. The operations are absent if the system has no such
// list. They query another process and may take seconds, so call them on a background thread.
struct LoginItemService {
    std::function<bool()> isEnabled;     // whether the application is on the list
    std::function<bool()> registerItem;  // adds it; false if that fails or the user removed it earlier
};

}  // namespace tarnik
