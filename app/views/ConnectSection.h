#pragma once

#include <QWidget>
#include <vector>

#include "app/views/ButtonRow.h"

class QBoxLayout;
class QLineEdit;

namespace tarnik {

class PageHeader;
class TerminalBox;
class TextLabel;

// The part of the window between the title line and the privacy switches. From top to bottom: header with the
// progress bar, amount of a download, paragraphs, terminal, link field, message, buttons. The order is the
// same on every page. Each widget keeps its typed text, selection and scroll position while it is shown.
class ConnectSection : public QWidget {
public:
    ConnectSection(int width, OnButton onButton, QWidget* parent);

    // Returns true if the new controls differ from the previous controls.
    bool setContent(const WindowContent& content);

    bool takesExtraHeight() const;
    QLineEdit* linkField() const { return field_; }
    const ButtonRow& buttons() const { return *buttons_; }
    std::vector<QWidget*> controls() const;  // in tab order

private:
    void setParagraphs(const std::vector<std::string>& paragraphs);
    void setTerminal(const WindowContent& content);
    void setLinkField(const WindowContent& content);

    // Children.
    PageHeader* header_;
    TextLabel* amount_;  // of a download
    QWidget* paragraphs_;
    std::vector<TextLabel*> paragraphLabels_;
    TerminalBox* terminal_ = nullptr;  // null before the first use
    QLineEdit* field_;
    TextLabel* message_;
    ButtonRow* buttons_;

    QBoxLayout* body_;  // everything below the header
};

}  // namespace tarnik
