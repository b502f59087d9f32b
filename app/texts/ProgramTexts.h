#pragma once

#include <string>

#include "app/CommandLine.h"
#include "app/NodeHomeOwner.h"

// The texts that the program prints on a terminal before a face exists, or without one.
namespace tarnik::ProgramTexts {

using Text = const char*;

// Printed after the start was passed to the instance that is running.
inline constexpr Text handedOver = "another copy is running, and goes on";
inline constexpr Text noSessionBus = "no session bus, so links opened elsewhere don't get here";

inline constexpr Text cantOpenWindow = "the window can't be opened: ";  // before Qt's reason
inline constexpr Text onlyForConsole = "this is the part for --console; start tarnik";

// Returns the output of --help.
std::string usage(CommandLine::Build build);

// Returns the sentence for a second program on the same node home. `owner` is std::nullopt if it is unknown.
std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner);

}  // namespace tarnik::ProgramTexts
