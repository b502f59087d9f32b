#pragma once

#include "app/model/WindowContent.h"

namespace tarnik {

// Explains the helper's failures instead of its facts until the helper has run for some time.
WindowContent connectedPage(const AppState& state, const WindowSetting& setting);

// Adds the symbol, the card, and a message: which switch is still off, or what closing the window does.
void addConnectedFacts(WindowContent& content, const AppState& state, const WindowSetting& setting);

}  // namespace tarnik
