#pragma once

#include <string>
#include <vector>

#include "app/doctor/Finding.h"

namespace tarnik {

// Returns the text for a terminal: without control characters and line breaks, which paths and answers of
// servers may have, and cut to 1000 characters.
std::string printable(const std::string& text);

// Returns one line per finding, and its remedy below it. Cuts nothing, because the text is redacted later.
std::string findingsText(const std::vector<Finding>& findings);

// Returns a JSON object with all findings and the number of problems.
std::string findingsJson(const std::vector<Finding>& findings);

}  // namespace tarnik
