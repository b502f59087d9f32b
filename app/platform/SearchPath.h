#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/process/Environment.h"

namespace tarnik {

// Splits the variable's value at its colons. Leaves out empty parts.
std::vector<std::string> splitVariable(const Environment& environment, const std::string& variable);

// Returns the program's path in one of the folders. Ignores relative folders, because they depend on the
// working directory.
std::optional<std::string> findProgram(std::string_view name, const std::vector<std::string>& folders);

}  // namespace tarnik
