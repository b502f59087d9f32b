#pragma once

#include <string_view>

namespace tarnik {

// Gives the status item that is shown a name, which VoiceOver says; Qt gives it none. Main thread.
void nameMacStatusItem(std::string_view name);

}  // namespace tarnik
