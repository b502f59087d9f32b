#pragma once

#include <string>

#include "core/relocation/Relocation.h"

namespace tarnik::Relocation {

// What the person is told about a copy that runs where it is.
struct Message {
    std::string title;
    std::string body;

    bool operator==(const Message&) const = default;
};

Message differentBuildMessage(const Launch& launch);
Message takeoverStuckMessage(const Launch& launch);
Message runHereMessage(const Launch& launch, std::string_view installPath = TarnikIdentity::installPath);

}  // namespace tarnik::Relocation
