#pragma once

#include <string>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Opens a folder for looking up names in it, which doesn't require permission to list it. Does not follow a
// link. On failure returns an empty descriptor and sets errno.
UniqueFd openForSearch(int at, const std::string& name);

}  // namespace tarnik
