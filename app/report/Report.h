#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/doctor/Finding.h"
#include "app/report/Redaction.h"

namespace tarnik {

// The sources of a report. Each text may have many lines; an empty one is left out.
struct ReportSources {
    std::string versions;  // of the program, the system and the helper
    std::string settings;  // of the build
    std::vector<Finding> findings;
    std::string status;  // of the running program, or the reason why it doesn't answer
    std::string journal;
    std::string helperLog;  // the end of it
};

// Returns the report as one text without anything private: every source passes the redaction. The oldest
// lines of a source that is too long are left out.
std::string reportText(const ReportSources& sources, const Redaction& redaction);

}  // namespace tarnik
