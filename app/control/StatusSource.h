#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/control/Status.h"
#include "app/model/AppState.h"
#include "core/foundation/Url.h"

namespace tarnik {

// Builds the status of the running program from the model's state and the journal.
struct StatusSource {
    // The values that stay the same for the whole run.
    Status::Program program;
    Status::Folders folders;
    Url webOrigin;
    bool hasDriver = false;
    std::optional<Status::Managed> policy;

    std::function<std::vector<JournalEvent>()> events;          // the latest ones, the oldest first
    std::function<RunHistory()> history;                        // of this run
    std::function<std::optional<std::string>()> helperVersion;  // of the installed helper
    std::function<bool()> checksForUpdates;

    Status at(const AppState& state, WallTime now) const;
};

}  // namespace tarnik
