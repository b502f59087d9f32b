#pragma once

#include <string>
#include <vector>

#include "app/doctor/Finding.h"
#include "core/node/Provenance.h"

namespace tarnik {

// Returns the doctor's finding about the installed files. It names the first files that differ.
Finding provenanceFinding(const ProvenanceCheck& check);

// Returns the lines of `tarnik verify`: at most 200 files of each tree, then their number.
std::vector<std::string> provenanceLines(const ProvenanceCheck& check);

// Returns the result as a JSON object, with the same files.
std::string provenanceJson(const ProvenanceCheck& check);

}  // namespace tarnik
