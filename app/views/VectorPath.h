#pragma once

#include <QPainterPath>
#include <string_view>

namespace tarnik {

// Parses the d attribute of an SVG path. Supports the absolute commands M, L, C and Z with space-separated
// numbers. Returns an empty path for any other text.
QPainterPath vectorPath(std::string_view description);

}  // namespace tarnik
