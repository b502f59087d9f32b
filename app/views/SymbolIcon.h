#pragma once

#include <string>
#include <string_view>

class QIcon;

namespace tarnik {

// Returns a symbol as a vector icon, which uses the application's palette when it is painted. `name` is one
// of SymbolName. Returns a null icon for any other name.
QIcon symbolIcon(std::string_view name);

// Returns the application's mark in one colour, for a menu bar. It is a mask, which some systems colour. Its
// own colour is visible on light and dark panels.
QIcon markIcon();

// Returns the mark on the application's tile, for windows and program lists.
QIcon applicationIcon();

// Returns an image file as a mask, which the system colours. Returns a null icon if the file does not exist.
QIcon maskIcon(const std::string& file);

// Returns an icon with two or three letters, for use without an image.
QIcon wordIcon(std::string_view word);

}  // namespace tarnik
