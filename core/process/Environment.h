#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>

namespace tarnik {

// The environment variables of a process, by name.
using Environment = std::map<std::string, std::string>;

// Returns the environment of this process. Not safe while another thread changes the environment.
Environment currentEnvironment();

// Returns the variable's value, or an empty string if the variable isn't set.
std::string environmentValue(const Environment& environment, const std::string& name);

// Returns the environment without the variables whose names begin with one of `prefixes`. Used for variables
// that a child must not inherit.
Environment withoutPrefixes(Environment environment, std::span<const std::string_view> prefixes);

// Returns the user's home directory from the passwd entry, for use if HOME isn't set. Returns "/" if the
// entry can't be read or contains no absolute path.
std::string homeDirectory();

}  // namespace tarnik
