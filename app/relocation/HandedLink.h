#pragma once

#include <optional>
#include <string>

#include "core/relocation/RecordLine.h"

namespace tarnik {

// Passes a pairing link to the copy of the application that replaces this one. The link is in a private file,
// because every user can read the arguments of a process.
//
// Both operations block while they access the file. A link that can't be written is lost without a report.
class HandedLink {
public:
    explicit HandedLink(const std::string& applicationSupport);

    void put(const std::string& link, Relocation::RecordTime now) const;

    // Removes the file and returns its link. Returns std::nullopt if the file is missing or malformed, or if
    // the link is more than ten minutes old or has a time in the future.
    std::optional<std::string> take(Relocation::RecordTime now) const;

private:
    const std::string folder_;
};

}  // namespace tarnik
