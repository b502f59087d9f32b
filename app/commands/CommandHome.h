#pragma once

#include <expected>

#include "app/ProgramStart.h"
#include "app/options/CommandOptions.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Returns the node home of the option --node-home, otherwise the one that the stored preferences choose.
std::expected<NodeHome, NodeHome::ResolveError> homeOf(const CommandOptions& options, const ProgramRun& run);

}  // namespace tarnik
