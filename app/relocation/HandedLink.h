#pragma once

#include <optional>
#include <string>

#include "core/relocation/RecordLine.h"

namespace tarnik {

// A pairing link on its way from a copy of the application that moves itself to the one that is opened in its
// place: in a private file, since anybody may list the arguments of a process.
//
// At best effort: a link that can't be written is lost.
class HandedLink {
public:
    explicit HandedLink(const std::string& applicationSupport);

    void put(const std::string& link, Relocation::RecordTime now) const;

    // Removes the link that was put last and returns it, or std::nullopt if that was more than ten minutes
    // ago.
    std::optional<std::string> take(Relocation::RecordTime now) const;

private:
    const std::string folder_;
};

}  // namespace tarnik
