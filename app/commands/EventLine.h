#pragma once

#include <string>

#include "app/commands/CommandOutput.h"
#include "app/journal/JournalEvent.h"

namespace tarnik {

// Returns the event as a line for readers, with the local time: "2026-03-01 14:05:09  The helper started."
// Failures are coloured if the output has colours. The sentence may come from a changed file, so it is
// cleaned.
std::string eventLine(const JournalEvent& event, const CommandOutput& output);

}  // namespace tarnik
