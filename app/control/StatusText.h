#pragma once

#include <string>
#include <vector>

#include "app/control/Status.h"

namespace tarnik {

// One row of the status on a terminal: a label in front of one or more lines.
struct StatusRow {
    std::string label;  // empty for the first row, which is the main sentence
    std::vector<std::string> lines;

    bool operator==(const StatusRow&) const = default;
};

// Returns the status for people, at most one screen. Contains no control characters: some of the texts are
// untrusted.
std::vector<StatusRow> statusRows(const Status& status, WallTime now);

}  // namespace tarnik
