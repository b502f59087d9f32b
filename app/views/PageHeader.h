#pragma once

#include <QWidget>

#include "app/model/WindowContent.h"

namespace tarnik {

class Grid;
class ProgressBar;
class SymbolView;
class TextLabel;

// The top of a page: symbol, heading and progress bar. The space of the bar is reserved. So the body doesn't
// move when the bar appears or disappears.
class PageHeader : public QWidget {
public:
    explicit PageHeader(QWidget* parent);

    void setContent(const WindowContent& content);

    // Places the children and returns the height, which ends where the body begins.
    int arrange(const Grid& grid);

private:
    // Children.
    SymbolView* const symbol_;
    TextLabel* const heading_;
    ProgressBar* const progress_;
};

}  // namespace tarnik
