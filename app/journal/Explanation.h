#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/journal/JournalEvent.h"
#include "app/model/HelperTrouble.h"

namespace tarnik {

// The reason why one part of the program is in its state, in words for the user.
struct Explanation {
    enum class Subject { program, install, helper, driver, pairing, update };

    Subject subject = Subject::program;
    std::string sentence;                  // one or more sentences; ages are relative to `now` of explain()
    std::int64_t failures = 0;             // of a child, in a row
    std::optional<WallTime> nextTry = {};  // of a child whose restart is planned

    bool operator==(const Explanation&) const = default;
};

// Explains the latest run of the program in `events`, which are ordered by time. Returns at most one
// explanation for each subject, in the order of Subject. A part that works has none.
std::vector<Explanation> explain(std::span<const JournalEvent> events, WallTime now);

// Returns the trouble of a helper that failed several times in a row and is started again, otherwise
// std::nullopt. The caller ends the trouble of a helper that has run for RestartBackoff::healthyAfter.
std::optional<HelperTrouble> helperTrouble(std::span<const JournalEvent> events);

// Returns how the child of a helper.ended, driver.ended or pairing.ended event ended: "exit 3", "signal 9".
std::string endOf(const JournalEvent& event);

}  // namespace tarnik
