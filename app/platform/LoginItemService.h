#pragma once

#include <functional>

namespace tarnik {

// The system's list of what starts when the person logs in. It asks another process and may take seconds: on
// a background thread. The operations are absent on a system that keeps no such list.
struct LoginItemService {
    std::function<bool()> isEnabled;     // whether the application is on the list
    std::function<bool()> registerItem;  // puts it there; false: not possible, or the person took it off
};

}  // namespace tarnik
