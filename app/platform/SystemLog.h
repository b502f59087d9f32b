#pragma once

#include <functional>
#include <string>

namespace tarnik {

// Writes to one category of the log, such as "updater". Call from any thread. Doesn't block for long.
using SystemLog = std::function<void(const std::string& message)>;

}  // namespace tarnik
