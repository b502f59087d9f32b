#pragma once

#include <string_view>

namespace tarnik {

// The version of this program, as the build numbers it: "0.1.0".
std::string_view programVersion();

}  // namespace tarnik
