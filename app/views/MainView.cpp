#include "app/views/MainView.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <optional>

#include "app/texts/WindowTexts.h"
#include "app/views/Announcer.h"
#include "app/views/ConnectSection.h"
#include "app/views/LinkField.h"
#include "app/views/Page.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

using Key = WindowContent::Key;

std::optional<QAbstractSlider::SliderAction> scrollActionFor(int key) {
    switch (key) {
        case Qt::Key_Up: return QAbstractSlider::SliderSingleStepSub;
        case Qt::Key_Down: return QAbstractSlider::SliderSingleStepAdd;
        case Qt::Key_PageUp: return QAbstractSlider::SliderPageStepSub;
        case Qt::Key_PageDown: return QAbstractSlider::SliderPageStepAdd;
        default: return std::nullopt;
    }
}

// Returns true for keys that only move the focus, change other keys, or act on the page.
bool keepsRefusal(const QKeyEvent& key) {
    const auto keys = {Qt::Key_Return, Qt::Key_Enter,   Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Backtab,
                       Qt::Key_Shift,  Qt::Key_Control, Qt::Key_Alt,    Qt::Key_Meta};
    return std::ranges::find(keys, key.key()) != keys.end();
}

// Returns an empty text if the clipboard has none. On X11 a program that owns the clipboard and hangs delays
// each request by 5 s, which is Qt's limit. text() alone would make three requests.
QString clipboardText() {
    const auto* data = QGuiApplication::clipboard()->mimeData();
    return data && !data->formats().isEmpty() ? data->text() : QString();
}

bool isRefused(const WindowContent& content) {
    return content.linkField && content.linkField->refused;
}

}  // namespace

MainView::MainView(const WindowContent& content, OnIntent onIntent)
    : onIntent_(std::move(onIntent)),
      content_(content),
      page_(new Page([this](const UserIntent& intent) { report(intent); })),
      announcer_(new Announcer(this)),
      scroll_(new QScrollArea(this)) {
    setAccessibleName(qtText(WindowTexts::product));

    // The page scrolls, because a small screen, large fonts or long texts can make it taller than the window.
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidget(page_);
    scroll_->viewport()->setAutoFillBackground(false);
    page_->setAutoFillBackground(false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll_);

    connect(field(), &QLineEdit::textEdited, this,
            [this] { report({.kind = UserIntent::Kind::dismissMessage}); });
    draw();
    updateTabOrder();
    updateFocus(nullptr);
}

LinkField* MainView::field() const {
    return page_->connect()->linkField();
}

void MainView::setContent(const WindowContent& content) {
    if (content == content_) return;
    const std::string news = content.newsSince(content_);
    const bool isNewPage = content.section != content_.section;
    // A link that was just refused is corrected next.
    const bool isRefusal = isRefused(content) && !isRefused(content_);
    QWidget* focused = isRefusal ? field() : window()->focusWidget();
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
    field()->setText(qtText(link));
}

void MainView::draw() {
    if (page_->setContent(content_)) updateTabOrder();
}

void MainView::updateTabOrder() {
    const auto controls = page_->controls();
    for (std::size_t i = 1; i < controls.size(); ++i) setTabOrder(controls[i - 1], controls[i]);
    for (auto* control : controls) control->installEventFilter(this);  // a repeated call has no effect
}

// Keeps the focus on `before` if that widget can have it. Otherwise moves the focus to the field or to the
// default button. If neither is available, no control has the focus, so no key has an unintended effect.
void MainView::updateFocus(QWidget* before) {
    const bool keeps = before && before != this && !before->isHidden() && before->isEnabled();
    QWidget* const button = page_->connect()->buttons().buttonFor(Key::defaultKey);
    QWidget* next = this;
    if (keeps) {
        next = before;
    } else if (!field()->isHidden() && field()->isEnabled()) {
        next = field();
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
    page_->setViewWidth(width());
    scrollToFocus();
}

bool MainView::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::KeyPress) dismissRefusal(*static_cast<QKeyEvent*>(event));
    return false;
}

void MainView::dismissRefusal(const QKeyEvent& key) {
    const bool isRefusal =
        content_.message && content_.message->kind == WindowContent::Message::Kind::refusal;
    if (isRefusal && !keepsRefusal(key)) report({.kind = UserIntent::Kind::dismissMessage});
}

void MainView::keyPressEvent(QKeyEvent* event) {
    if (window()->focusWidget() == this) dismissRefusal(*event);
    if (const auto action = scrollActionFor(event->key()))
        return scroll_->verticalScrollBar()->triggerAction(*action);
    // A held Return or Escape has no effect, because the user may have pressed it on an earlier page.
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->isAutoRepeat() || (!isReturn && event->key() != Qt::Key_Escape))
        return QWidget::keyPressEvent(event);
    event->accept();
    if (isReturn) return handleReturn();
    auto* cancel = page_->connect()->buttons().buttonFor(Key::cancelKey);
    if (cancel && cancel->isEnabled()) report(cancel->intent());
}

void MainView::handleReturn() {
    const auto* focused = window()->focusWidget();
    if (content_.linkField && focused == field()) return report(content_.linkField->onReturn);
    // Return in the text or in the check box must not answer the page's question.
    if (dynamic_cast<const QPlainTextEdit*>(focused) || dynamic_cast<const QCheckBox*>(focused)) return;
    const auto* button = dynamic_cast<const IntentButton*>(focused);
    if (!button) button = page_->connect()->buttons().buttonFor(Key::defaultKey);
    if (button && button->acceptsInput()) report(button->intent());
}

// Copies the intent, because the handler may set other content and so destroy the original.
void MainView::report(const UserIntent& intent) {
    auto copy = intent;
    if (copy.kind == UserIntent::Kind::pasteLink) {
        field()->setText(clipboardText().left(field()->maxLength()).trimmed());
        copy.kind = UserIntent::Kind::connectPasted;
    }
    const bool needsLink = copy.kind == UserIntent::Kind::connectPasted;
    if (needsLink && field()->text().trimmed().isEmpty()) return field()->setFocus(Qt::OtherFocusReason);
    onIntent_(copy, field()->text().toStdString());
}

}  // namespace tarnik
