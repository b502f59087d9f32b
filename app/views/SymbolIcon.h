#pragma once

#include <string_view>

class QIcon;

namespace tarnik {

// A symbol as a vector icon: sharp at every size and scale, in the colours of the application's palette at
// the time it is painted. `name` is one of SymbolName; another name gives a null icon.
QIcon symbolIcon(std::string_view name);

// The application's mark, in one colour, for a menu bar.
QIcon markIcon();

}  // namespace tarnik
