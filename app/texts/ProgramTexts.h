#pragma once

#include <string>

#include "app/CommandLine.h"
#include "app/NodeHomeOwner.h"

// The texts that the program prints on a terminal before or instead of a face.
namespace tarnik::ProgramTexts {

using Text = const char*;

// Another copy of the program has the session.
inline constexpr Text handedOver = "another copy is running, and goes on";
inline constexpr Text noSessionBus = "no session bus, so links opened elsewhere don't get here";

inline constexpr Text cantOpenWindow = "the window can't be opened: ";  // before Qt's reason
inline constexpr Text onlyForConsole = "this is the part for --console; start tarnik";

// The answer to --help.
std::string usage(CommandLine::Build build);

// The reason why a second program on the same node home ends.
std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner);

}  // namespace tarnik::ProgramTexts
