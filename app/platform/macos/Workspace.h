#pragma once

#include <string_view>

namespace tarnik {

// Opens the address with whatever program the person has for it; nothing happens to what is no address. Main
// thread; returns at once.
void openInWorkspace(std::string_view url);

}  // namespace tarnik
