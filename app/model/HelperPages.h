#pragma once

#include "app/model/WindowContent.h"

namespace tarnik {

// Returns the page for a helper that starts again. From its second failure in a row the page explains why.
WindowContent reconnectingPage(const AppState& state);

// Returns the page for a helper that can't run now: it is being installed, its install failed, it is missing,
// or its folder can't be used. Returns std::nullopt for other states.
std::optional<WindowContent> unavailableHelperPage(const AppState& state);

}  // namespace tarnik
