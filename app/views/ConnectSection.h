#pragma once

#include <QWidget>
#include <vector>

#include "app/views/ButtonRow.h"

class QBoxLayout;
class QLineEdit;

namespace tarnik {

class ProgressBar;
class Spinner;
class SymbolView;
class TerminalBox;
class TextLabel;

// The upper half of the window. Each thing that it can show is one widget, which stays, with what was typed,
// selected or scrolled, for as long as it is shown.
class ConnectSection : public QWidget {
public:
    ConnectSection(int width, OnButton onButton, QWidget* parent);

    // Whether there are other controls than before.
    bool setContent(const WindowContent& content);

    bool takesHeight() const;  // what it is given beyond what it needs
    QLineEdit* linkField() const { return field_; }
    const ButtonRow& buttons() const { return *buttons_; }
    std::vector<QWidget*> controls() const;  // in the order of the Tab key

private:
    void addHeading(QBoxLayout& layout);
    void addMessage(QBoxLayout& layout);
    void setHeading(const WindowContent& content);
    void setParagraphs(const std::vector<std::string>& paragraphs);
    void setProgress(const WindowContent& content);
    void setTerminal(const WindowContent& content);
    void setLinkField(const WindowContent& content);
    void setMessage(const WindowContent& content);
    void placeButtons(const WindowContent& content);

    // Children, as they stand from top to bottom.
    SymbolView* symbol_;
    Spinner* spinnerBefore_;  // in the symbol's place
    TextLabel* heading_;
    Spinner* spinnerAfter_;
    QWidget* paragraphs_;
    std::vector<TextLabel*> paragraphLabels_;
    ProgressBar* progress_;
    TextLabel* progressText_;
    TerminalBox* terminal_ = nullptr;  // once there was a text for it
    QLineEdit* field_;
    Spinner* messageSpinner_;
    TextLabel* message_;
    ButtonRow* buttons_;
    // Their lines, owned by the layout of this.
    QBoxLayout* headingLine_ = nullptr;
    QBoxLayout* messageLine_ = nullptr;
};

}  // namespace tarnik
