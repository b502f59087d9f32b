#pragma once

#include <array>
#include <functional>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// What a child's descriptors 0, 1 and 2 are connected to.
using StandardStreams = std::array<Stdio, 3>;

// Returns what `spawn` returns, called once with `streams`, or with the same open files under other numbers
// above 2, on whatever thread and descriptor table it costs least.
//
// Linux copies the parent's whole table for every child, which then closes nearly all of it again: with
// thousands open that takes several times as long as everything else in posix_spawn(3).
int onSmallTable(const StandardStreams& streams, const std::function<int(const StandardStreams&)>& spawn);

}  // namespace tarnik
