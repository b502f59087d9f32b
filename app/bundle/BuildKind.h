#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/process/Environment.h"

// Properties of this build. CMake compiles one of BuildKind_development.cpp and BuildKind_release.cpp.
namespace tarnik {

// Returns true if this build accepts the option --bundle, which replaces all settings of the build.
bool isDevelopmentBuild();

// Returns the folder that replaces the organisation's settings of this machine: the value of
// TARNIK_POLICY_FOLDER, if it is an absolute path. Returns std::nullopt in a release build.
std::optional<std::string> developmentPolicyFolder(const Environment& environment);

// Returns the version that is set in CMake, such as "0.1.0".
std::string_view programVersion();

}  // namespace tarnik
