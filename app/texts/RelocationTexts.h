#pragma once

#include <string>
#include <string_view>

#include "core/relocation/Relocation.h"

namespace tarnik {

// The alerts about a copy of the application that was not moved.
namespace RelocationTexts {

using Text = std::string_view;

inline constexpr Text differentBuild = "This is a different build of tarnik";
inline constexpr Text differentBuildBody =
    "The tarnik in your Applications folder is a different build from this one, so this one is running from "
    "“{folder}” and the one in Applications is untouched.";

inline constexpr Text takeoverStuck = "The older tarnik is still running";
inline constexpr Text takeoverStuckBody =
    "An older tarnik is still running from your Applications folder and would not quit, so this newer one is "
    "running from “{folder}” for now. Quit tarnik from the menu bar at the top of your screen, then open the "
    "new one again.";

inline constexpr Text moveIt = "Move tarnik to Applications";
inline constexpr Text moveItBody =
    "tarnik is running from “{folder}”, not your Applications folder, so the switches you turn on may not "
    "stick. Quit tarnik, drag it into your Applications folder in Finder, and open it from there.";

inline constexpr Text temporaryCopy = "tarnik is running from a temporary copy";
inline constexpr Text copyOfApplicationsBody =
    "macOS is still running tarnik from a temporary copy instead of from your Applications folder, so the "
    "switches you turn on may not stick. Quit tarnik, drag it from Applications to your Desktop and back "
    "into "
    "Applications in Finder, then open it from there.";
inline constexpr Text copyOfFolderBody =
    "macOS is still running tarnik from a temporary copy instead of from “{folder}”, so the switches you "
    "turn "
    "on may not stick. Quit tarnik, drag it into your Applications folder in Finder, and open it from there.";
inline constexpr Text copyOfDownloadBody =
    "macOS is still running tarnik from a temporary copy instead of from where you downloaded it, so the "
    "switches you turn on may not stick. Quit tarnik, drag it into your Applications folder in Finder, and "
    "open it from there.";

}  // namespace RelocationTexts

namespace Relocation {

// A message for the user about a copy of the application that was not moved.
struct Message {
    std::string title;
    std::string body;

    bool operator==(const Message&) const = default;
};

Message differentBuildMessage(const Launch& launch);
Message takeoverStuckMessage(const Launch& launch);
Message runHereMessage(const Launch& launch, std::string_view installPath = TarnikIdentity::installPath);

}  // namespace Relocation

}  // namespace tarnik
