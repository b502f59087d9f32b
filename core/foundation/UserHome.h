#pragma once

#include <string>

namespace tarnik {

// The user's home folder by the system's passwd entry, for when HOME is absent; "/" when there is no entry.
std::string userHome();

}  // namespace tarnik
