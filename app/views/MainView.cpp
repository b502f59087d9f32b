#include "app/views/MainView.h"

#include <QBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <optional>

#include "app/texts/WindowTexts.h"
#include "app/views/Announcer.h"
#include "app/views/Colours.h"
#include "app/views/ConnectSection.h"
#include "app/views/QtText.h"
#include "app/views/SwitchesSection.h"
#include "app/views/SymbolIcon.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

using Key = WindowContent::Key;

constexpr int columnWidth = 404;
constexpr int sideMargin = 28;
constexpr int endMargin = 22;  // above and below
constexpr int sectionGap = 16;

constexpr int tileSide = 30;
constexpr int tileGap = 8;

class Tile : public QWidget {
public:
    explicit Tile(QWidget* parent) : QWidget(parent), icon_(applicationIcon()) {
        setFixedSize(tileSide, tileSide);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        icon_.paint(&painter, rect().adjusted(-1, -1, 1, 1));  // crops the icon's margin
    }

private:
    const QIcon icon_;
};

// Makes the line with the application's icon and name.
QWidget* makeTitleLine(QWidget* parent) {
    auto* line = new QWidget(parent);
    auto* name = new TextLabel(TextLabel::Role::brand, line);
    name->setPlainText(WindowTexts::product);
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(tileGap);
    layout->addWidget(new Tile(line));
    layout->addWidget(name, 1, Qt::AlignVCenter);
    return line;
}

class Divider : public QWidget {
public:
    explicit Divider(QWidget* parent) : QWidget(parent) { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), lineColour(palette())); }
};

std::optional<QAbstractSlider::SliderAction> scrollActionFor(int key) {
    switch (key) {
        case Qt::Key_Up: return QAbstractSlider::SliderSingleStepSub;
        case Qt::Key_Down: return QAbstractSlider::SliderSingleStepAdd;
        case Qt::Key_PageUp: return QAbstractSlider::SliderPageStepSub;
        case Qt::Key_PageDown: return QAbstractSlider::SliderPageStepAdd;
        default: return std::nullopt;
    }
}

}  // namespace

MainView::MainView(const WindowContent& content, OnIntent onIntent)
    : onIntent_(std::move(onIntent)),
      content_(content),
      announcer_(new Announcer(this)),
      scroll_(new QScrollArea(this)) {
    setAccessibleName(qtText(WindowTexts::product));

    // The page scrolls, because a small screen, large fonts or long texts can make it taller than the window.
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->setWidget(makePage());
    scroll_->viewport()->setAutoFillBackground(false);
    scroll_->widget()->setAutoFillBackground(false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll_);

    connect(connect_->linkField(), &QLineEdit::textEdited, this,
            [this] { report({.kind = UserIntent::Kind::editLink}); });
    draw();
    updateTabOrder();
    updateFocus(nullptr);
}

QWidget* MainView::makePage() {
    auto* page = new QWidget;
    const auto onButton = [this](const UserIntent& intent) { report(intent); };
    auto* column = new QWidget(page);
    column->setFixedWidth(columnWidth);
    // Creates the children in their order on the screen, because screen readers read them in this order.
    auto* title = makeTitleLine(column);
    connect_ = new ConnectSection(columnWidth, onButton, column);
    auto* divider = new Divider(column);
    switches_ = new SwitchesSection(onButton, column);

    // The right margin is reserved for the scroll bar, so the bar never narrows the column.
    auto* layout = new QHBoxLayout(page);
    layout->setContentsMargins(sideMargin, endMargin, 0, endMargin);
    layout->setSpacing(0);
    layout->addWidget(column);
    layout->addStretch(1);

    pageLayout_ = new QVBoxLayout(column);
    pageLayout_->setContentsMargins(0, 0, 0, 0);
    pageLayout_->setSpacing(0);
    pageLayout_->addWidget(title);
    pageLayout_->addSpacing(sectionGap);
    pageLayout_->addWidget(connect_);
    pageLayout_->addSpacing(sectionGap);
    pageLayout_->addStretch(1);
    pageLayout_->addWidget(divider);
    pageLayout_->addSpacing(sectionGap);
    pageLayout_->addWidget(switches_);
    return page;
}

void MainView::setContent(const WindowContent& content) {
    if (content == content_) return;
    const std::string news = content.newsSince(content_);
    const bool isNewPage = content.section != content_.section;
    QWidget* focused = window()->focusWidget();
    // Doesn't scroll back if the user has scrolled away from the focus, because the content can change often.
    const bool followsFocus = isNewPage || isInView(focused);
    content_ = content;
    draw();
    updateFocus(focused);
    if (isNewPage) scroll_->verticalScrollBar()->setValue(0);
    if (followsFocus) scrollToFocus();
    if (!news.empty() && isVisible()) announcer_->announce(news);
}

void MainView::fillLinkField(const std::string& link) {
    connect_->linkField()->setText(qtText(link));
}

void MainView::draw() {
    const bool upperChanged = connect_->setContent(content_);
    const bool lowerChanged = switches_->setContent(content_.switches);
    if (upperChanged || lowerChanged) updateTabOrder();
    pageLayout_->setStretchFactor(connect_, connect_->takesExtraHeight() ? 1000 : 0);
}

void MainView::updateTabOrder() {
    auto controls = connect_->controls();
    const auto below = switches_->controls();
    controls.insert(controls.end(), below.begin(), below.end());
    for (std::size_t i = 1; i < controls.size(); ++i) setTabOrder(controls[i - 1], controls[i]);
}

// Keeps the focus on `before` if that widget can have it. Otherwise moves the focus to the field or to the
// default button. If neither is available, no control has the focus, so no key has an unintended effect.
void MainView::updateFocus(QWidget* before) {
    const bool keeps = before && before != this && !before->isHidden() && before->isEnabled();
    QWidget* const field = connect_->linkField();
    QWidget* const button = connect_->buttons().buttonFor(Key::defaultKey);
    QWidget* next = this;
    if (keeps) {
        next = before;
    } else if (!field->isHidden() && field->isEnabled()) {
        next = field;
    } else if (button && button->isEnabled()) {
        next = button;
    }
    if (next == window()->focusWidget()) return;
    next->setFocus(Qt::OtherFocusReason);
    scrollToFocus();
}

bool MainView::isInView(const QWidget* widget) const {
    if (!widget || !scroll_->widget()->isAncestorOf(widget)) return false;
    const auto* viewport = scroll_->viewport();
    return viewport->rect().contains(QRect(widget->mapTo(viewport, QPoint()), widget->size()));
}

// Queued, because the layout must first place the changed widgets.
void MainView::scrollToFocus() {
    QMetaObject::invokeMethod(
        this,
        [this] {
            QWidget* const focused = window()->focusWidget();
            if (focused && scroll_->widget()->isAncestorOf(focused)) scroll_->ensureWidgetVisible(focused);
        },
        Qt::QueuedConnection);
}

// Sets the focus in a new window, which has no focus widget yet.
void MainView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!window()->focusWidget()) updateFocus(nullptr);
}

void MainView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    scrollToFocus();
}

void MainView::keyPressEvent(QKeyEvent* event) {
    if (const auto action = scrollActionFor(event->key()))
        return scroll_->verticalScrollBar()->triggerAction(*action);
    // A held Return or Escape has no effect, because the user may have pressed it on an earlier page.
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->isAutoRepeat() || (!isReturn && event->key() != Qt::Key_Escape))
        return QWidget::keyPressEvent(event);
    event->accept();
    if (isReturn) return handleReturn();
    auto* cancel = connect_->buttons().buttonFor(Key::cancelKey);
    if (cancel && cancel->isEnabled()) report(cancel->intent());
}

void MainView::handleReturn() {
    const auto* focused = window()->focusWidget();
    if (content_.linkField && focused == connect_->linkField()) return report(content_.linkField->onReturn);
    const auto* button = dynamic_cast<const IntentButton*>(focused);
    if (!button) button = connect_->buttons().buttonFor(Key::defaultKey);
    if (button && button->acceptsInput()) report(button->intent());
}

// Copies the intent, because the handler may set other content and so destroy the original.
void MainView::report(const UserIntent& intent) {
    onIntent_(UserIntent(intent), connect_->linkField()->text().toStdString());
}

}  // namespace tarnik
