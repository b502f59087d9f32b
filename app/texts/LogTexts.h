#pragma once

#include <string>

// The messages of `tarnik history` and `tarnik logs`.
namespace tarnik::LogTexts {

inline constexpr const char* emptyHistory = "tarnik has recorded no events yet.";

inline std::string emptyLog(const std::string& path) {
    return "The log " + path + " is empty or doesn't exist yet.";
}

}  // namespace tarnik::LogTexts
