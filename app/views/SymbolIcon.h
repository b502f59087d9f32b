#pragma once

#include <string>
#include <string_view>

class QIcon;

namespace tarnik {

// Returns a symbol as a vector icon. Painting uses the application's current palette. `name` is one of
// SymbolName. Returns a null icon for any other name.
QIcon symbolIcon(std::string_view name);

// Returns the mark on the application's tile, for windows and program lists.
QIcon applicationIcon();

// Returns an image file as a mask. The system chooses the colour of a mask. Returns a null icon if the file
// does not exist.
QIcon maskIcon(const std::string& file);

// Returns an icon that shows a word of two or three letters. It is used if an image is missing.
QIcon wordIcon(std::string_view word);

}  // namespace tarnik
