#pragma once

#include <string_view>

// The texts of the notices that the desktop shows outside of the window.
namespace tarnik::NoticeTexts {

using Text = std::string_view;

inline constexpr Text installFailedTitle = "tarnik couldn't install its helper";
inline constexpr Text installFailedBody = "Open tarnik to see why and to try again.";

inline constexpr Text helperAwayTitle = "tarnik is not connected";
inline constexpr Text helperAwayBody =
    "Its helper has not been running for a while. tarnik keeps trying to start it. Open tarnik to see why "
    "and what you can do.";

inline constexpr Text closedTitle = "tarnik is still running";
inline constexpr Text closedInMenuBar =
    "You closed its window. To open it again or to quit, click the tarnik picture in the menu bar.";
inline constexpr Text closedInPanel =
    "You closed its window. To open it again or to quit, click the tarnik picture in the panel.";

// The name of the action that a click on a notice performs. Most desktops don't show it.
inline constexpr Text open = "Open tarnik";

}  // namespace tarnik::NoticeTexts
