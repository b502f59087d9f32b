#pragma once

#include "app/platform/SwitchOperations.h"

namespace tarnik {

// The switches as the system keeps them for this program's signature.
SwitchOperations macSwitches();

}  // namespace tarnik
