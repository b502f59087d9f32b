#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// A Node.js runtime that can be installed.
struct NodeRuntime {
    std::string platform;  // as releases name it
    std::string version;   // as `node --version` prints it: "v24.22.1"
    std::string base;      // the URL of the folder with the archive
    std::string file;
    std::string sha256;  // of the archive, lower-case hexadecimal

    bool operator==(const NodeRuntime&) const = default;
};

// The Node.js version that this build installs.
namespace NodeRuntimePin {

inline constexpr std::string_view version = "v24.22.1";
inline constexpr std::string_view distBase = "https://nodejs.org/dist/v24.22.1/";  // the project's own server

struct Archive {  // of one platform
    std::string file;
    std::string sha256;  // lower-case hexadecimal
};

// Returns the archives of the pinned version by platform.
const std::map<std::string, Archive, std::less<>>& archives();

// Returns the runtime that is installed on this platform: the row of archives(), or else `ofBuild` if it is
// for this platform. Returns std::nullopt if neither exists.
std::optional<NodeRuntime> runtimeFor(const std::string& platform, const std::optional<NodeRuntime>& ofBuild);

}  // namespace NodeRuntimePin

}  // namespace tarnik
