#pragma once

#include <QWidget>

#include "app/model/WindowContent.h"

namespace tarnik {

class Grid;
class SymbolView;
class TextLabel;

// The one place for messages, above the buttons. A symbol in the gutter shows the kind of the message.
class MessageView : public QWidget {
public:
    explicit MessageView(QWidget* parent);

    void setMessage(const std::optional<WindowContent::Message>& message);

    // Places the children and returns the height. The widget is as wide as the page.
    int arrange(const Grid& grid);

private:
    SymbolView* symbol_;  // a child, like the label
    TextLabel* text_;
};

}  // namespace tarnik
