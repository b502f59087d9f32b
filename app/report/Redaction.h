#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/process/Environment.h"

namespace tarnik {

// Removes from a text all that identifies a person or a machine, and all that may be a secret: pairing codes
// and addresses with their paths, long runs of the characters of tokens and keys, values after names such as
// "password", e-mail, network and hardware addresses, the home folder, the user's and the host's name.
//
// A value. Linear in the length of the text. It errs towards hiding: a long folder name may be hidden too.
class Redaction {
public:
    // The names of this machine and its user.
    struct Names {
        std::string userFolder;  // replaced by "~"
        std::vector<std::string> users;
        std::vector<std::string> hosts;
        std::string resolvedFolder = {};  // the user's folder without links

        // Asks the system and the environment.
        static Names ofThisMachine(const Environment& environment, const std::string& userFolder);
    };

    explicit Redaction(Names names);

    std::string apply(std::string_view text) const;

private:
    std::string withoutNames(std::string text) const;

    const Names names_;
};

}  // namespace tarnik
