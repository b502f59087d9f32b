#pragma once

#include "core/foundation/WallTime.h"

namespace tarnik {

// Returns the beginning of the next day in the local time zone. Two times are on the same day if their next
// day is the same.
WallTime nextDay(WallTime time);

}  // namespace tarnik
