#pragma once

#include <string>

// The texts that show the progress of an install. describe() is declared beside each type of failure.
namespace tarnik::InstallTexts {

inline constexpr const char* runtimeName = "Node.js";
inline constexpr const char* packageName = "tarnik's helper";

std::string downloadingRuntime(const std::string& version);
std::string downloadingPackage();

}  // namespace tarnik::InstallTexts
