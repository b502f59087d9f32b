#pragma once

#include <optional>

#include "app/model/AppState.h"
#include "app/model/WindowParts.h"

namespace tarnik {

// Returns the check box for the start at login, or std::nullopt if the system's list is unknown. A click
// while the system waits for the user opens the system's settings.
std::optional<WindowParts::CheckBox> loginCheckBox(const AppState& state);

// Returns the message about a choice that had no effect, or std::nullopt.
std::optional<WindowParts::Message> loginMessage(const AppState& state);

}  // namespace tarnik
