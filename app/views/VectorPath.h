#pragma once

#include <QPainterPath>
#include <string_view>

namespace tarnik {

// The outline that the d attribute of an SVG path describes. Knows absolute M, L, C and Z, each followed by
// its numbers with spaces between them; an empty path for anything else.
QPainterPath vectorPath(std::string_view description);

}  // namespace tarnik
