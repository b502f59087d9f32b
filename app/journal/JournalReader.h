#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "app/journal/JournalEvent.h"

namespace tarnik {

// Returns the last `count` events of the journal file at `path` and of its older copy, the oldest first.
// Skips damaged lines. Reads at most the last part of each file, follows no link and never blocks on a pipe.
// Returns no events if the file is missing or can't be read.
std::vector<JournalEvent> readJournal(const std::string& path, std::size_t count);

}  // namespace tarnik
