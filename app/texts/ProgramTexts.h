#pragma once

#include <string>

#include "app/NodeHomeOwner.h"

// The texts that the program prints on a terminal when no face (window or console) exists yet.
namespace tarnik::ProgramTexts {

using Text = const char*;

// Printed after the running instance has accepted this start.
inline constexpr Text handedOver = "another copy is running, and goes on";
inline constexpr Text noSessionBus = "no session bus, so links opened elsewhere don't get here";

inline constexpr Text cantOpenWindow = "the window can't be opened: ";  // before Qt's reason
inline constexpr Text startTheFront = "this executable is a part of tarnik; start tarnik instead";
inline constexpr Text noWindow =
    "the window isn't installed; install the package tarnik, or use --console, which needs no display";
inline constexpr Text noConsole = "tarnik-console isn't installed; install the package tarnik-console";

// Returns the sentence for a second program on the same node home. `owner` is std::nullopt if it is unknown.
std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner);

}  // namespace tarnik::ProgramTexts
