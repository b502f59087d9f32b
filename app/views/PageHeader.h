#pragma once

#include <QWidget>

#include "app/model/WindowContent.h"

namespace tarnik {

class ProgressBar;
class SymbolView;
class TextLabel;

// The top of a page: symbol, heading and progress bar. The space of the bar is reserved. So the body doesn't
// move when the bar appears or disappears.
class PageHeader : public QWidget {
public:
    static constexpr int gapBelow = 12;  // the space between heading and body; contains the bar

    explicit PageHeader(QWidget* parent);

    void setContent(const WindowContent& content);

private:
    // Children.
    TextLabel* const heading_;
    SymbolView* const symbol_;
    ProgressBar* const progress_;
};

}  // namespace tarnik
