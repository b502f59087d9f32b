#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tarnik {

// The user's stored preferences under our bundle identifier. Main thread only. Reads use a copy in memory.
struct UserDefaults {
    std::function<std::optional<std::string>(const std::string& key)>
        text;                                               // std::nullopt if absent or no text
    std::function<bool(const std::string& key)> flag;       // false if absent
    std::function<void(const std::string& key)> setFlag;    // stores true
    std::function<void(const std::string& key)> clearFlag;  // removes the flag
};

}  // namespace tarnik
