#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/model/SampleScreens.h"
#include "app/views/Colours.h"
#include "core/foundation/Url.h"

namespace tarnik {

// Renders the sample states of the window for a reviewer. Call on the main thread when the application object
// exists. Each operation returns the program's exit status.
struct ScreenGallery {
    Url webOrigin;  // shown in the link field
    std::vector<SampleScreen> screens = sampleScreens();

    // Shows the window in one state until the user closes it. The window's buttons do nothing.
    int showScreen(std::string_view name, Appearance appearance) const;

    // Writes the pictures of each state into `folder`: NAME-light.png, NAME-dark.png, both at higher contrast
    // as NAME-light-contrast.png, and all at twice the size as NAME-light@2x.png. Creates the folder. Needs
    // no display.
    int writeScreens(const std::string& folder) const;
};

}  // namespace tarnik
