#pragma once

#include <QIcon>
#include <functional>
#include <vector>

class QPainter;
class QRect;

namespace tarnik {

// Draws an icon into a rectangle. The painter's state is restored afterwards.
using DrawIcon = std::function<void(QPainter& painter, const QRect& rect, QIcon::Mode mode)>;

// Returns an icon that is drawn at each size when it is needed. `sides` are the sizes, in pixels, that trays
// and window managers can choose.
QIcon drawnIcon(DrawIcon draw, const std::vector<int>& sides);

}  // namespace tarnik
