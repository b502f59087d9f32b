#pragma once

#include "app/model/WindowContent.h"

namespace tarnik {

// Returns the page for a helper that starts again. From its second failure in a row the page explains why.
WindowContent reconnectingPage(const AppState& state);

// Explains the failures of a helper that has several in a row. The page stays the same while the helper runs
// again for a short time.
void addTrouble(WindowContent& content, const AppState& state);

// Returns the page for a helper that can't run now: it is being installed, its install failed, it is missing,
// or its folder can't be used. Returns std::nullopt for other states.
std::optional<WindowContent> unavailableHelperPage(const AppState& state);

}  // namespace tarnik
