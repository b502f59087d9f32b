#pragma once

#include <optional>
#include <string_view>

#include "app/bundle/BundleInfo.h"
#include "core/node/NodeRuntime.h"

// Properties of this build. CMake compiles one of BuildKind_development.cpp and BuildKind_release.cpp.
namespace tarnik {

bool isDevelopmentBuild();

// Returns the Node.js runtime that Info.plist names for the developer's machine, whose platform has no pinned
// runtime. Returns std::nullopt if Info.plist names none, and always in a release build.
std::optional<NodeRuntime> developmentRuntime(const BundleInfo& info);

// Returns the version that is set in CMake, such as "0.1.0".
std::string_view programVersion();

}  // namespace tarnik
