#pragma once

#include "app/platform/LoginItemService.h"

namespace tarnik {

// The application itself as an item of the system's list.
LoginItemService macLoginItem();

}  // namespace tarnik
