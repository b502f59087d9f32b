#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace tarnik {

// A published archive of the runtime.
struct RuntimeArchive {
    std::string file;
    std::string sha256;  // lower-case hexadecimal

    bool operator==(const RuntimeArchive&) const = default;
};
using RuntimeArchives = std::map<std::string, RuntimeArchive, std::less<>>;  // by platform

// The one Node.js that this build installs.
namespace NodeRuntimePin {

inline constexpr std::string_view version = "v24.22.1";
inline constexpr std::string_view distBase = "https://nodejs.org/dist/v24.22.1/";  // in front of a file

const RuntimeArchives& archives();

}  // namespace NodeRuntimePin

}  // namespace tarnik
