#pragma once

#include "app/model/WindowContent.h"

namespace tarnik {

// Returns the page for a pairing. The page after a success shows the same facts as the page of a connected
// machine. Needs state.pairing.
WindowContent pairingPage(const AppState& state, const WindowSetting& setting);

// Returns the page before the session of a pairing exists.
WindowContent pairingStartPage();

}  // namespace tarnik
