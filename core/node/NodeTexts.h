#pragma once

#include <string>

// The progress of an install, as the user reads it. The sentences of failures are returned by describe(),
// which each failure's header declares.
namespace tarnik::NodeTexts {

inline constexpr const char* runtimeName = "Node.js";
inline constexpr const char* packageName = "tarnik's helper";

std::string downloadingRuntime(const std::string& version);
std::string downloadingPackage();

}  // namespace tarnik::NodeTexts
