#pragma once

#include <functional>
#include <string>

namespace tarnik {

// Writes to one category of the system's log, such as "app" or "updater". Call from any thread. Never blocks
// for long.
using SystemLog = std::function<void(const std::string& message)>;

}  // namespace tarnik
