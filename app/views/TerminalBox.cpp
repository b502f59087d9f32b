#include "app/views/TerminalBox.h"

#include <QAbstractTextDocumentLayout>
#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <algorithm>
#include <cmath>
#include <limits>

#include "app/views/QtText.h"

namespace tarnik {
namespace {

using Shows = WindowContent::Terminal::Shows;

constexpr int mostLines = 5;
constexpr int leastLines = 2;
constexpr int verticalPadding = 10;
constexpr int sidePadding = 12;
constexpr double fontSize = 0.88;  // of the system font

// Returns the length of the front of `before` that `after` lacks. Returns 0 if the front is unchanged or the
// texts are unrelated.
qsizetype droppedFront(const QString& before, const QString& after) {
    constexpr qsizetype prefix = 80;  // long enough to be unique
    if (after.size() < prefix) return 0;
    const auto place = before.indexOf(QStringView(after).left(prefix));
    return place > 0 && after.startsWith(QStringView(before).mid(place)) ? place : 0;
}

qsizetype commonPrefix(const QString& a, const QString& b) {
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
    document()->setDocumentMargin(0);
    setFrameShape(QFrame::StyledPanel);
    // The bar is drawn only if the text is longer than the box. Its place is reserved, so that lines don't
    // break differently when it appears.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    const int inside = frameWidth();
    const int barWidth = verticalScrollBar()->sizeHint().width();
    const bool isReversed = layoutDirection() == Qt::RightToLeft;  // the bar is at the left
    const int barSide = std::max(0, sidePadding - inside - barWidth);
    const int otherSide = sidePadding - inside;
    setViewportMargins(isReversed ? barSide : otherSide, verticalPadding - inside,
                       isReversed ? otherSide : barSide, verticalPadding - inside);

    setSystemFont(font());
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        if (!isChanging_) followsEnd_ = shows_ == Shows::end && value >= verticalScrollBar()->maximum();
    });
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { scrollToEnd(); });
    hide();
}

void TerminalBox::setSystemFont(const QFont& font) {
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (font.pointSizeF() > 0) fixed.setPointSizeF(font.pointSizeF() * fontSize);
    setFont(fixed);
}

void TerminalBox::setLongText(const std::string& text) {
    text_.clear();
    clear();
    shows_ = Shows::beginning;
    followsEnd_ = false;
    rest_ = qtText(text);
    addSlice();
}

void TerminalBox::addSlice() {
    constexpr qsizetype length = 50'000;
    // A slice ends with a line, so that it divides no character.
    const auto lineEnd = rest_.indexOf(QLatin1Char('\n'), length);
    const auto end = lineEnd < 0 ? rest_.size() : lineEnd + 1;
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(rest_.left(end));
    rest_.remove(0, end);
    if (!rest_.isEmpty()) QMetaObject::invokeMethod(this, [this] { addSlice(); }, Qt::QueuedConnection);
}

void TerminalBox::setTerminal(const WindowContent::Terminal& terminal) {
    updateAccessibleName(*this, terminal.accessibleName);
    QString text = qtText(terminal.text);
    while (text.endsWith(QLatin1Char('\n'))) text.chop(1);  // an empty last line would hide the first
    const bool isSamePlace = terminal.shows == shows_;
    shows_ = terminal.shows;
    if (text == text_ && isSamePlace) return;
    if (!isSamePlace) followsEnd_ = shows_ == Shows::end;

    const int place = isSamePlace ? verticalScrollBar()->value() : 0;
    isChanging_ = true;
    dropFront(droppedFront(text_, text));
    replaceFrom(commonPrefix(text_, text), text);
    (void)linesUpTo(std::numeric_limits<int>::max());  // so that the scroll bar's range is final
    verticalScrollBar()->setValue(place);
    isChanging_ = false;
    scrollToEnd();
}

void TerminalBox::reset() {
    if (text_.isEmpty()) return;
    text_.clear();
    clear();
    shows_ = Shows::end;
    followsEnd_ = true;
}

// Edits only the end of the document, because replacing the whole document would lose the selection and the
// scroll position.
void TerminalBox::replaceFrom(qsizetype position, const QString& text) {
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(position));
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    // A selection that ends at the end of the document would grow with inserted text.
    QTextCursor selection = textCursor();
    const int anchor = selection.anchor();
    const int end = selection.position();
    cursor.insertText(text.mid(position));
    if (std::max(anchor, end) <= position) {
        selection.setPosition(anchor);
        selection.setPosition(end, QTextCursor::KeepAnchor);
        setTextCursor(selection);
    }
    text_ = text;
}

void TerminalBox::dropFront(qsizetype count) {
    if (count == 0) return;
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(count), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    text_.remove(0, count);
}

void TerminalBox::scrollToEnd() {
    if (followsEnd_ && !isChanging_) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

// Breaks the text into lines at the current width, until there are `most`. The layout is lazy: it counts a
// block that was never painted as one line.
int TerminalBox::linesUpTo(int most) const {
    int lines = 0;
    for (auto block = document()->begin(); block.isValid() && lines < most; block = block.next()) {
        (void)document()->documentLayout()->blockBoundingRect(block);
        lines += block.lineCount();
    }
    return lines;
}

int TerminalBox::heightOf(int lines) const {
    const auto first = document()->begin();
    const double block = document()->documentLayout()->blockBoundingRect(first).height();
    return static_cast<int>(std::ceil(lines * block / std::max(1, first.lineCount()))) + 1 +
           2 * verticalPadding;
}

int TerminalBox::preferredHeight(int room) const {
    int lines = std::clamp(linesUpTo(mostLines), 1, mostLines);
    while (lines > leastLines && heightOf(lines) > room) --lines;
    return heightOf(lines);
}

}  // namespace tarnik
