#include "app/views/TerminalBox.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextDocument>

#include "app/views/AccessibleName.h"

namespace tarnik {
namespace {

constexpr int fewestLines = 4;
constexpr int usualLines = 6;
constexpr int padding = 8;

// How much has left the front of `before` when `after` is the same text some lines later; 0 when it is not.
qsizetype droppedFront(const QString& before, const QString& after) {
    constexpr qsizetype mark = 80;  // enough of a text to know it by
    if (after.size() < mark) return 0;
    const auto place = before.indexOf(QStringView(after).left(mark));
    return place > 0 && after.startsWith(QStringView(before).mid(place)) ? place : 0;
}

qsizetype sharedFront(const QString& a, const QString& b) {
    const auto ends = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return ends.first - a.begin();
}

}  // namespace

TerminalBox::TerminalBox(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    document()->setDocumentMargin(padding);

    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (font().pointSizeF() > 0) fixed.setPointSizeF(font().pointSizeF() * 0.92);
    setFont(fixed);

    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        if (!changing_) following_ = value >= verticalScrollBar()->maximum();
    });
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { followEnd(); });
    hide();
}

void TerminalBox::setTerminal(const WindowContent::Terminal& terminal) {
    updateAccessibleName(*this, terminal.accessibleName);
    const QString text = qtText(terminal.text);
    if (text == shown_) return;

    const int place = verticalScrollBar()->value();
    changing_ = true;
    dropFront(droppedFront(shown_, text));
    replaceFrom(sharedFront(shown_, text), text);
    verticalScrollBar()->setValue(place);
    changing_ = false;
    followEnd();
}

void TerminalBox::forget() {
    if (shown_.isEmpty()) return;
    shown_.clear();
    clear();
    following_ = true;
}

// Edits the document rather than setting its text, which would lose selection and scrolling.
void TerminalBox::replaceFrom(qsizetype place, const QString& text) {
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(place));
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    // A selection up to the very end would grow with what is written there.
    QTextCursor selection = textCursor();
    const int anchor = selection.anchor();
    const int position = selection.position();
    cursor.insertText(text.mid(place));
    if (std::max(anchor, position) <= place) {
        selection.setPosition(anchor);
        selection.setPosition(position, QTextCursor::KeepAnchor);
        setTextCursor(selection);
    }
    shown_ = text;
}

void TerminalBox::dropFront(qsizetype count) {
    if (count == 0) return;
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(count), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    shown_.remove(0, count);
}

void TerminalBox::followEnd() {
    if (following_ && !changing_) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

QSize TerminalBox::sizeHint() const {
    return {200, usualLines * fontMetrics().lineSpacing() + 2 * (padding + frameWidth())};
}

QSize TerminalBox::minimumSizeHint() const {
    return {100, fewestLines * fontMetrics().lineSpacing() + 2 * (padding + frameWidth())};
}

}  // namespace tarnik
