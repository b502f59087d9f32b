#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "app/policy/Policy.h"
#include "app/policy/PolicyParser.h"
#include "core/process/Environment.h"

namespace tarnik {

// The result of reading the settings of the organisation. Without such settings everything is empty.
struct PolicyReading {
    Policy policy;                      // empty if a file is damaged
    std::vector<std::string> ignored;   // a sentence for each file that can't be trusted
    std::optional<std::string> damage;  // a sentence; one damaged file refuses all of them

    // Returns all sentences as one text, or an empty text.
    std::string warnings() const;

    bool operator==(const PolicyReading&) const = default;
};

// A folder with the file policy.json and the folder policy.d. A file is trusted if `owner` owns the file and
// all folders below `base`, with `base`, and nobody else can write to any of them. Links aren't followed.
struct PolicyFolder {
    std::string base;                       // an absolute path
    std::vector<std::string> folders = {};  // from `base` to the folder of the files
    uid_t owner = 0;

    // Reads policy.json, then the files *.json of policy.d in the order of their names.
    PolicyReading read(PolicyParser::Releases releases) const;
};

// Reads the settings of this machine: the files in /etc/tarnik on Linux, the settings that a configuration
// profile forces on macOS.
PolicyReading systemPolicy(PolicyParser::Releases releases);

// Returns systemPolicy(). A development build reads the folder in TARNIK_POLICY_FOLDER instead, if that
// variable is set; then the user owns the files.
PolicyReading currentPolicy(const Environment& environment, PolicyParser::Releases releases);

// Return the sentence about a file that is damaged or ignored.
std::string policyDamage(const std::string& file, const std::string& reason);
std::string policyIgnored(const std::string& file, const std::string& reason);

}  // namespace tarnik
