#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>

namespace tarnik {

// The environment variables of a process, by name.
using Environment = std::map<std::string, std::string>;

// Returns the environment of this process. Not safe while another thread changes it.
Environment currentEnvironment();

// Returns the value of the variable; empty if it isn't set.
std::string environmentValue(const Environment& environment, const std::string& name);

// Returns the environment without the variables whose names begin with one of `prefixes`. Used to keep
// variables for this program out of a child's environment.
Environment withoutPrefixes(Environment environment, std::span<const std::string_view> prefixes);

// Returns the user's home directory from the passwd entry, for use if HOME isn't set. Returns "/" if there is
// no entry or its path isn't absolute.
std::string homeDirectory();

}  // namespace tarnik
