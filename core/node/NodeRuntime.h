#pragma once

#include <string>

namespace tarnik {

// A Node.js to install: where its archive is, and what it must be.
struct NodeRuntime {
    std::string platform;  // as releases name it
    std::string version;   // as it says itself: "v24.22.1"
    std::string base;      // the address of the folder that holds the archive
    std::string file;
    std::string sha256;  // of the archive, lower-case hexadecimal

    bool operator==(const NodeRuntime&) const = default;
};

}  // namespace tarnik
