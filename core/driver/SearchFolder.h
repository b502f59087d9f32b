#pragma once

#include <string>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Opens a folder, but no link, to look up names in it: no permission to list it is needed. Closed with errno
// set on failure.
UniqueFd openForSearch(int at, const std::string& name);

}  // namespace tarnik
