#pragma once

#include <QPlainTextEdit>

#include "app/model/WindowContent.h"

namespace tarnik {

// What a program writes to its terminal: to read, to select and to copy. Follows its end unless it was
// scrolled up; a selection survives what is written after it.
class TerminalBox : public QPlainTextEdit {
public:
    explicit TerminalBox(QWidget* parent = nullptr);

    void setTerminal(const WindowContent::Terminal& terminal);
    void forget();  // the next text is another program's

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    void replaceFrom(qsizetype place, const QString& text);
    void dropFront(qsizetype count);
    void followEnd();

    QString shown_;
    bool following_ = true;
    bool changing_ = false;
};

}  // namespace tarnik
