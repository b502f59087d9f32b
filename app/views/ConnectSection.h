#pragma once

#include <QWidget>
#include <vector>

#include "app/views/ButtonRow.h"

namespace tarnik {

class FactCard;
class Grid;
class LinkField;
class MessageView;
class PageHeader;
class StepsView;
class TerminalBox;
class TextLabel;
class TroubleLabel;

// The part of the window between the title line and the privacy switches. From top to bottom: header with the
// progress bar, body, message, buttons. The places of these are the same on every page; a long body pushes
// down what is below it. Each widget keeps its typed text, selection and scroll position while it is shown.
class ConnectSection : public QWidget {
public:
    ConnectSection(OnButton onButton, QWidget* parent);

    void setContent(const WindowContent& content);

    // Places the children and returns the height. `grid` is the grid of the page.
    int arrange(const Grid& grid);

    LinkField* linkField() const { return field_; }
    const ButtonRow& buttons() const { return *buttons_; }
    std::vector<QWidget*> controls() const;  // in tab order

protected:
    void changeEvent(QEvent* event) override;

private:
    void requestLayout();
    void setBody(const WindowContent& content);
    void setParagraphs(const std::vector<std::string>& paragraphs);
    void setTerminal(const WindowContent& content);
    void setLinkField(const WindowContent& content);
    int arrangeBody(const Grid& grid, int top, int bottom);

    // Children.
    PageHeader* header_;
    TextLabel* amount_;  // of a download
    StepsView* steps_;
    std::vector<TextLabel*> paragraphs_;
    TroubleLabel* trouble_;
    FactCard* card_;
    TerminalBox* terminal_ = nullptr;  // null before the first use
    LinkField* field_;
    MessageView* message_;
    ButtonRow* buttons_;
};

}  // namespace tarnik
