#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/model/SampleScreens.h"
#include "app/views/Colours.h"
#include "core/foundation/Url.h"

namespace tarnik {

// Every state of the window, to be looked at. The application object exists; each answer is the program's
// exit status. Main thread.
struct ScreenGallery {
    Url webOrigin;  // for the link field
    std::vector<SampleScreen> screens = sampleScreens();

    // A window in that state, whose buttons do nothing, until it is closed.
    int showScreen(std::string_view name, Appearance appearance) const;

    // NAME-light.png, NAME-dark.png and the same at twice the size, NAME-light@2x.png, into `folder`, which
    // is made where it is missing. Needs no display.
    int writeScreens(const std::string& folder) const;
};

}  // namespace tarnik
