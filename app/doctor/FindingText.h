#pragma once

#include <string>
#include <vector>

#include "app/doctor/Finding.h"

namespace tarnik {

// Returns the text without control characters and line breaks. Paths and servers may have any.
std::string printable(const std::string& text);

// Returns one line per finding, and its remedy below it.
std::string findingsText(const std::vector<Finding>& findings);

// Returns a JSON object with all findings and the number of problems.
std::string findingsJson(const std::vector<Finding>& findings);

}  // namespace tarnik
