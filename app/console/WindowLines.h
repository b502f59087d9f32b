#pragma once

#include <string>
#include <vector>

#include "app/model/MenuContent.h"
#include "app/model/WindowContent.h"

namespace tarnik {

// Returns the window as lines of text from top to bottom. "[Continue]" is a button; "(x)" is a switch that is
// on; "[x]" is a checked box. The output of a program is left out. `now` is the time for relative times.
std::vector<std::string> windowLines(const WindowContent& content, WallTime now);

// Returns the menu as one line: "Open tarnik | Quit tarnik".
std::string menuLine(const MenuContent& menu);

}  // namespace tarnik
