#pragma once

#include <string>

#include "app/NodeHomeOwner.h"

// The texts that the program prints on a terminal when no face (window or console) exists yet.
namespace tarnik::ProgramTexts {

using Text = const char*;

// Printed after the running instance has accepted this start.
inline constexpr Text handedOver = "tarnik is already running; this start was passed to it";
inline constexpr Text noSessionBus =
    "there is no session bus, so links that are opened in other programs can't reach tarnik";

inline constexpr Text noDisplay = "no display was found; tarnik serve runs without one";
inline constexpr Text outOfThreads =
    "the system can't create another thread; end other programs, then start tarnik again";
inline constexpr Text cantOpenWindow = "the window can't be opened: ";  // before Qt's reason
inline constexpr Text noSuchLanguage = "tarnik has no translation into this language";
inline constexpr Text startTheFront = "this executable is a part of tarnik; start tarnik instead";
inline constexpr Text noWindow =
    "the window isn't installed; install the package tarnik, or use tarnik serve, which needs no display";
inline constexpr Text noConsole = "tarnik-console isn't installed; install the package tarnik-console";

// The sentences for a second program on the same node home. The window shows them in an alert.
inline constexpr Text homeInUse = "Another tarnik uses the helper's folder {home}. Quit it first.";
inline constexpr Text homeInUseByWindow =
    "Another tarnik (process {process}, with a window) uses the helper's folder {home}. Use that one, or "
    "quit it first.";
inline constexpr Text homeInUseByConsole =
    "Another tarnik (process {process}, in a terminal) uses the helper's folder {home}. Type quit there "
    "first.";
inline constexpr Text homeInUseByService =
    "Another tarnik (process {process}, in the background) uses the helper's folder {home}. End it with "
    "tarnik quit first.";

// Returns the sentence for a second program on the same node home. `owner` is std::nullopt if it is unknown.
std::string nodeHomeInUse(const std::string& home, const std::optional<NodeHomeOwner::Owner>& owner);

}  // namespace tarnik::ProgramTexts
