#include "app/views/MainView.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <optional>

#include "app/model/WindowTexts.h"
#include "app/views/Announcer.h"
#include "app/views/Colours.h"
#include "app/views/ConnectSection.h"
#include "app/views/QtText.h"
#include "app/views/SwitchesSection.h"
#include "app/views/TitleLine.h"

namespace tarnik {
namespace {

using Key = WindowContent::Key;

constexpr int columnWidth = 404;
constexpr int sideMargin = 28;
constexpr int endMargin = 22;  // above and below
constexpr int sectionGap = 16;

class Divider : public QWidget {
public:
    explicit Divider(QWidget* parent) : QWidget(parent) { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), lineColour(palette())); }
};

std::optional<QAbstractSlider::SliderAction> scrollingOf(int key) {
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
    : onIntent_(std::move(onIntent)), content_(content), announcer_(new Announcer(this)) {
    setAccessibleName(qtText(WindowTexts::product));

    // Small screens, larger fonts and long words of an installer make a page longer than the window.
    scroll_ = new QScrollArea(this);
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
            [this] { ask({.kind = WindowIntent::Kind::editLink}); });
    draw();
    settleTabOrder();
    settleFocus(nullptr);
}

QWidget* MainView::makePage() {
    auto* page = new QWidget;
    const auto onButton = [this](const WindowIntent& intent) { ask(intent); };
    auto* column = new QWidget(page);
    column->setFixedWidth(columnWidth);
    // Screen readers go through them in this order: that on the screen.
    auto* title = new TitleLine(column);
    connect_ = new ConnectSection(columnWidth, onButton, column);
    auto* divider = new Divider(column);
    switches_ = new SwitchesSection(onButton, column);

    // A scroll bar gets its place beside the column and takes none of it away.
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
    const bool isOtherPage = content.section != content_.section;
    QWidget* focused = window()->focusWidget();
    // The person may have scrolled away from the focus, and content changes ten times a second.
    const bool followsFocus = isOtherPage || isInView(focused);
    content_ = content;
    draw();
    settleFocus(focused);
    if (isOtherPage) scroll_->verticalScrollBar()->setValue(0);
    if (followsFocus) scrollToFocus();
    if (!news.empty() && isVisible()) announcer_->announce(news);
}

void MainView::fillLinkField(const std::string& link) {
    connect_->linkField()->setText(qtText(link));
}

void MainView::draw() {
    const bool otherAbove = connect_->setContent(content_);
    const bool otherBelow = switches_->setContent(content_.switches);
    if (otherAbove || otherBelow) settleTabOrder();
    pageLayout_->setStretchFactor(connect_, connect_->takesHeight() ? 1000 : 0);
}

void MainView::settleTabOrder() {
    auto controls = connect_->controls();
    const auto below = switches_->controls();
    controls.insert(controls.end(), below.begin(), below.end());
    for (std::size_t i = 1; i < controls.size(); ++i) setTabOrder(controls[i - 1], controls[i]);
}

// Leaves the keyboard where it is as long as that can take it. Otherwise it goes to the field or to the
// default button; where there is neither, to no control, so that no key does what nobody meant.
void MainView::settleFocus(QWidget* before) {
    const bool stays = before && before != this && !before->isHidden() && before->isEnabled();
    QWidget* const field = connect_->linkField();
    QWidget* const button = connect_->buttons().buttonFor(Key::defaultKey);
    QWidget* next = this;
    if (stays)
        next = before;
    else if (!field->isHidden() && field->isEnabled())
        next = field;
    else if (button && button->isEnabled())
        next = button;
    if (next == window()->focusWidget()) return;
    next->setFocus(Qt::OtherFocusReason);
    scrollToFocus();
}

bool MainView::isInView(const QWidget* widget) const {
    if (!widget || !scroll_->widget()->isAncestorOf(widget)) return false;
    const auto* viewport = scroll_->viewport();
    return viewport->rect().contains(QRect(widget->mapTo(viewport, QPoint()), widget->size()));
}

// After the layout has run, which places what changed.
void MainView::scrollToFocus() {
    QMetaObject::invokeMethod(
        this,
        [this] {
            QWidget* const focused = window()->focusWidget();
            if (focused && scroll_->widget()->isAncestorOf(focused)) scroll_->ensureWidgetVisible(focused);
        },
        Qt::QueuedConnection);
}

// In a window that is new, nothing has the keyboard yet.
void MainView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!window()->focusWidget()) settleFocus(nullptr);
}

void MainView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    scrollToFocus();
}

void MainView::keyPressEvent(QKeyEvent* event) {
    if (const auto scrolling = scrollingOf(event->key()))
        return scroll_->verticalScrollBar()->triggerAction(*scrolling);
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->isAutoRepeat() || (!isReturn && event->key() != Qt::Key_Escape))
        return QWidget::keyPressEvent(event);
    event->accept();
    if (isReturn) return pressReturn();
    auto* cancel = connect_->buttons().buttonFor(Key::cancelKey);
    if (cancel && cancel->isEnabled()) ask(cancel->intent());
}

void MainView::pressReturn() {
    const auto* focused = window()->focusWidget();
    if (content_.linkField && focused == connect_->linkField()) return ask(content_.linkField->onReturn);
    const auto* button = dynamic_cast<const IntentButton*>(focused);
    if (!button) button = connect_->buttons().buttonFor(Key::defaultKey);
    if (button && button->isReady()) ask(button->intent());
}

// By value: the answer may be another content, and where the intent stood is gone.
void MainView::ask(WindowIntent intent) {
    onIntent_(intent, connect_->linkField()->text().toStdString());
}

}  // namespace tarnik
