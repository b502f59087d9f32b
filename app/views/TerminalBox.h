#pragma once

#include <QPlainTextEdit>

#include "app/model/WindowContent.h"

namespace tarnik {

// Shows the terminal output of a program. The user can select and copy text. Scrolls to the end unless the
// user has scrolled up. A selection survives changes elsewhere in the text.
class TerminalBox : public QPlainTextEdit {
public:
    explicit TerminalBox(QWidget* parent = nullptr);

    void setTerminal(const WindowContent::Terminal& terminal);
    void reset();  // clears the text; call it between two programs

    // Returns a height of whole lines with the frame, at the current width: up to five lines, as many as fit
    // into `room`, but at least two of a longer text.
    int preferredHeight(int room) const;

private:
    void replaceFrom(qsizetype position, const QString& text);
    void dropFront(qsizetype count);
    void scrollToEnd();
    int linesUpTo(int most) const;
    int heightOf(int lines) const;

    QString text_;
    bool followsEnd_ = true;
    bool isChanging_ = false;
};

}  // namespace tarnik
