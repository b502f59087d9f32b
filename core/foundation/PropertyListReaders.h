#pragma once

#include <optional>
#include <string_view>

#include "core/foundation/PropertyList.h"

// Parsers for the three formats. Each takes the contents of a file of at most PropertyList::maxBytes. Each
// returns std::nullopt for anything but one complete list.
namespace tarnik::PropertyListReaders {

inline constexpr std::string_view binaryMagic = "bplist00";

std::optional<PropertyList> readBinary(std::string_view bytes);

// `text` is UTF-8. Its only control characters are tabs, carriage returns and line feeds.
std::optional<PropertyList> readXml(std::string_view text);
std::optional<PropertyList> readOpenStep(std::string_view text);

// Makes a dictionary. The later of two entries with the same key wins.
PropertyList dictionaryOf(PropertyList::Dictionary entries);

}  // namespace tarnik::PropertyListReaders
