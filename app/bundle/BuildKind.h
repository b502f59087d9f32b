#pragma once

#include <string_view>

// Properties of this build. CMake compiles one of BuildKind_development.cpp and BuildKind_release.cpp.
namespace tarnik {

// Returns true if this build accepts the option --bundle, which replaces all settings of the build.
bool isDevelopmentBuild();

// Returns the version that is set in CMake, such as "0.1.0".
std::string_view programVersion();

}  // namespace tarnik
