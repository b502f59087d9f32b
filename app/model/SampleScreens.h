#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "app/model/WindowContent.h"
#include "app/texts/RelocationTexts.h"

namespace tarnik {

// A named state of the application, for tests and images of the window.
struct SampleScreen {
    std::string_view name;  // lower case with dashes; usable as a file name
    AppState state;
    std::optional<Relocation::Message> alert = std::nullopt;  // shown in front of the window
    WindowSetting::Closing closing = WindowSetting::Closing::staysInPanel;
    std::string_view typed = {};    // in the link field
    std::string_view details = {};  // shown in their dialog instead of the window, if not empty
};

// The moment of all samples, so that their texts are always the same.
WallTime sampleTime();

// Returns one screen for each state that the window distinguishes, in the order of a typical use.
std::vector<SampleScreen> sampleScreens();

}  // namespace tarnik
