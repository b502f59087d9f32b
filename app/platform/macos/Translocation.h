#pragma once

#include <optional>
#include <string>

namespace tarnik {

// Whether the system runs a bundle from a randomised read-only copy, and what that was opened from, where the
// system tells.
struct Translocation {
    bool isTranslocated = false;
    std::optional<std::string> originalPath;

    static Translocation of(const std::string& bundlePath);
};

}  // namespace tarnik
