#pragma once

#include <string>

#include "core/relocation/Relocation.h"

namespace tarnik::Relocation {

// A message for the user about a copy of the application that was not moved.
struct Message {
    std::string title;
    std::string body;

    bool operator==(const Message&) const = default;
};

Message differentBuildMessage(const Launch& launch);
Message takeoverStuckMessage(const Launch& launch);
Message runHereMessage(const Launch& launch, std::string_view installPath = TarnikIdentity::installPath);

}  // namespace tarnik::Relocation
