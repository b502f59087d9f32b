#pragma once

#include <QWidget>
#include <vector>

#include "app/model/WindowContent.h"

namespace tarnik {

class Grid;
class TextLabel;

// A card with one fact per row: a label and a value.
class FactCard : public QWidget {
public:
    explicit FactCard(QWidget* parent);

    void setCard(const WindowContent::Card& card);

    // Places the children for the width of the grid's column, and returns the height.
    int arrange(const Grid& grid);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Row {  // children
        TextLabel* label;
        TextLabel* value;
    };

    std::vector<Row> rows_;
};

}  // namespace tarnik
