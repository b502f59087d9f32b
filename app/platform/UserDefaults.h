#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tarnik {

// What is remembered for this user from one run to the next, under the bundle identifier. Main thread;
// quick, since the system keeps it in memory.
struct UserDefaults {
    std::function<std::optional<std::string>(const std::string& key)> text;  // none for other kinds of values
    std::function<bool(const std::string& key)> flag;                        // false when there is none
    std::function<void(const std::string& key)> setFlag;                     // to true
};

}  // namespace tarnik
