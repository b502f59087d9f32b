#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "app/model/AppState.h"
#include "app/texts/RelocationTexts.h"

namespace tarnik {

// A state of the application under a name, to look at what the window makes of it.
struct SampleScreen {
    std::string_view name;  // lower case, with dashes; fit for a file name
    AppState state;
    std::optional<Relocation::Message> alert = std::nullopt;  // stands before the window
};

// One for each state that the window tells apart, in the order in which a person would meet them.
std::vector<SampleScreen> sampleScreens();

}  // namespace tarnik
