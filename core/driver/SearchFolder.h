#pragma once

#include <string>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Opens a folder for lookups of names. The user need not have permission to list the folder. Does not follow
// a link in the last path component. On failure returns an empty UniqueFd and sets errno.
UniqueFd openForSearch(int at, const std::string& name);

}  // namespace tarnik
