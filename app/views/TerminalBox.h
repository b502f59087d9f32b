#pragma once

#include <QPlainTextEdit>

#include "app/model/WindowContent.h"

namespace tarnik {

// Shows the terminal output of a program. The user can select and copy text. Keeps showing the end of the
// text, or its beginning, until the user scrolls. A selection survives changes elsewhere in the text.
class TerminalBox : public QPlainTextEdit {
public:
    explicit TerminalBox(QWidget* parent = nullptr);

    void setTerminal(const WindowContent::Terminal& terminal);
    // Shows the beginning of a text of any length, and adds the rest in slices while the event loop runs.
    // Breaks only the lines that become visible, so the scroll bar is an estimate. Call it once.
    void setLongText(const std::string& text);
    void reset();  // clears the text; call it between two programs

    void setSystemFont(const QFont& font);

    // Returns a height of whole lines with the frame, at the current width: up to five lines, as many as fit
    // into `room`, but at least two of a longer text.
    int preferredHeight(int room) const;

private:
    void addSlice();
    void replaceFrom(qsizetype position, const QString& text);
    void dropFront(qsizetype count);
    void scrollToEnd();
    int linesUpTo(int most) const;
    int heightOf(int lines) const;

    QString text_;
    QString rest_;  // of a long text
    WindowContent::Terminal::Shows shows_ = WindowContent::Terminal::Shows::end;
    bool followsEnd_ = true;
    bool isChanging_ = false;
};

}  // namespace tarnik
