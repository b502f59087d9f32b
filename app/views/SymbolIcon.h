#pragma once

#include <string>
#include <string_view>

class QIcon;

namespace tarnik {

// A symbol as a vector icon: sharp at every size and scale, in the colours of the application's palette at
// the time it is painted. `name` is one of SymbolName; another name gives a null icon.
QIcon symbolIcon(std::string_view name);

// The application's mark, in one colour, for a menu bar. A mask where the system colours it; elsewhere its
// own colour stands out on light and dark panels.
QIcon markIcon();

// The mark on the application's tile, for windows and lists of programs.
QIcon applicationIcon();

// An image file as a mask, which the system colours; null when there is no such file.
QIcon maskIcon(const std::string& file);

// A word of two or three letters in the mark's place.
QIcon wordIcon(std::string_view word);

}  // namespace tarnik
