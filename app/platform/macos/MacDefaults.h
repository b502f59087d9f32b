#pragma once

#include "app/platform/UserDefaults.h"

namespace tarnik {

// The preferences of this program's bundle identifier.
UserDefaults macDefaults();

}  // namespace tarnik
