#pragma once

#include <QWidget>
#include <array>

#include "app/model/WindowContent.h"

namespace tarnik {

class Grid;

// Three pictures with labels and an arrow between each two: the way from the chat to the connection. Labels
// that don't fit beside their pictures are drawn below them.
class StepsView : public QWidget {
public:
    explicit StepsView(QWidget* parent);

    void setSteps(const WindowContent::Steps& steps);

    // Sets the height for the width of the grid's column, and returns it.
    int arrange(const Grid& grid);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::array<double, 3> widths() const;
    void drawStep(QPainter& painter, std::size_t step, double left, double width) const;

    std::array<QString, 3> labels_;
    double scale_ = 1;  // pixels per point
    bool isStacked_ = false;
};

}  // namespace tarnik
