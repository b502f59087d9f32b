#pragma once

#include "core/foundation/Time.h"

// How long one process may hold the machine awake before it is ended.
namespace tarnik::KeepAwakeCap {

inline constexpr Seconds maxHold{3600};
// One that ends this close to the cap, or later, was ended by it.
inline constexpr Seconds margin{120};

}  // namespace tarnik::KeepAwakeCap
