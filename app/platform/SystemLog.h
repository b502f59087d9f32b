#pragma once

#include <functional>
#include <string>

namespace tarnik {

// One channel of the system's log, such as "app" or "updater". From any thread; never blocks for long.
using SystemLog = std::function<void(const std::string& message)>;

}  // namespace tarnik
