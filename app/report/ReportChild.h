#pragma once

#include <expected>
#include <optional>
#include <string>

#include "core/foundation/Time.h"
#include "core/process/Environment.h"

namespace tarnik {

// A run of `tarnik report` in a process of its own. The window uses it, because the doctor in the report may
// wait for the network for 20 s and locks files that the program itself has locked.
struct ReportChild {
    std::string executable;  // the program that users start
    Environment environment;
    std::optional<std::string> nodeHome;  // replaces the one of the preferences
    std::optional<std::string> bundle;    // replaces the one that contains the program; development builds
    Seconds timeout = Seconds(30);

    // Returns the redacted report, or a sentence for the user. Blocks for at most `timeout` + 12 s.
    std::expected<std::string, std::string> run() const;
};

}  // namespace tarnik
