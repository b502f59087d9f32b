#pragma once

#include "app/model/WindowContent.h"

namespace tarnik {

WindowContent connectedPage(const AppState& state, const WindowSetting& setting);

// Adds the symbol, the card, and a message: which switch is still off, or what closing the window does.
void addConnectedFacts(WindowContent& content, const AppState& state, const WindowSetting& setting);

}  // namespace tarnik
