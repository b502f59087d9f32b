#include "app/views/MainWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QShortcut>
#include <QWindow>
#include <algorithm>

#include "app/texts/WindowTexts.h"
#include "app/views/Grid.h"
#include "app/views/MenuKey.h"
#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"

namespace tarnik {
namespace {

// The assumed size of the frame. The real height of the title bar is unknown until the window is mapped.
constexpr QSize assumedFrame(0, 40);

// Returns the top left corner nearest to `position` that keeps all of `size` inside `area`.
QPoint inside(const QRect& area, QPoint position, QSize size) {
    const QPoint last(area.right() + 1 - size.width(), area.bottom() + 1 - size.height());
    return {std::max(area.left(), std::min(position.x(), last.x())),
            std::max(area.top(), std::min(position.y(), last.y()))};
}

}  // namespace

MainWindow::MainWindow(WindowContent content, MainView::OnIntent onIntent)
    : content_(std::move(content)), onIntent_(std::move(onIntent)) {
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    setWindowTitle(qtText(WindowTexts::product));
    setWindowIcon(applicationIcon());
    fitScreen();

    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, [this] { close(); });
}

// Called after show(), so that the window system maps the window meanwhile. The view is not in a layout,
// because a layout would reset the geometry and undo the position that the window system chose.
void MainWindow::makeView() {
    view_ = new MainView(content_, onIntent_);
    view_->fillLinkField(link_);
    view_->setParent(this);
    view_->setGeometry(rect());
    view_->show();
}

void MainWindow::setContent(const WindowContent& content) {
    if (view_) return view_->setContent(content);
    content_ = content;
}

void MainWindow::fillLinkField(const std::string& link) {
    if (view_) return view_->fillLinkField(link);
    link_ = link;
}

void MainWindow::present() {
    // Sets the position, because window managers choose a new position for a window that was hidden.
    if (!isVisible()) move(positionToShow());
    if (isMinimized()) showNormal();
    show();
    if (!view_) makeView();
    if (!areaChanges_) {
        // Queued, because the move to the new screen is not complete yet and would undo a new size.
        connect(windowHandle(), &QWindow::screenChanged, this, &MainWindow::screenChanged,
                Qt::QueuedConnection);
        screenChanged();
    }
    raise();
    activateWindow();
}

// Returns the previous position if its screen is still connected. Otherwise returns a position that centres
// the window.
QPoint MainWindow::positionToShow() const {
    if (position_ && QGuiApplication::screenAt(*position_ + rect().center())) return *position_;
    const QRect area = screen()->availableGeometry();
    return inside(area, area.center() - rect().center(), outerSize(size()));
}

QSize MainWindow::outerSize(QSize inner) const {
    const QSize frame = frameGeometry().size() - size();
    return inner + (frame.height() > 0 ? frame : assumedFrame);
}

void MainWindow::fitScreen() {
    const QSize room = screen()->availableGeometry().size() - outerSize(QSize(0, 0));
    const QSize fullSize(Grid::scaled(font(), Grid::pageWidth), Grid::scaled(font(), Grid::pageHeight));
    setFixedSize(fullSize.boundedTo(room).expandedTo(QSize(1, 1)));
}

void MainWindow::screenChanged() {
    disconnect(areaChanges_);
    areaChanges_ = connect(screen(), &QScreen::availableGeometryChanged, this, &MainWindow::moveIntoScreen);
    fitScreen();
}

void MainWindow::moveIntoScreen() {
    fitScreen();
    const QPoint moved = inside(screen()->availableGeometry(), pos(), outerSize(size()));
    if (moved != pos()) move(moved);
}

void MainWindow::setOnClose(OnClose onClose) {
    onClose_ = std::move(onClose);
}

void MainWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) fitScreen();
    const bool isSeen = (event->type() == QEvent::ActivationChange && isActiveWindow()) ||
                        (event->type() == QEvent::WindowStateChange && isVisible() && !isMinimized());
    if (isSeen && onSeen_) onSeen_();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    const auto onClose = onClose_;  // a handler may replace onClose_
    if (onClose.closed) onClose.closed();
    event->setAccepted(!(onClose.stays && onClose.stays()));
}

void MainWindow::setMenuKeys(const MenuContent& menu,
                             const std::function<void(MenuContent::Action)>& onAction) {
    for (const auto& entry : menu.entries) {
        if (const auto key = menuKey(entry); !key.isEmpty())
            connect(new QShortcut(key, this), &QShortcut::activated, this,
                    [onAction, action = *entry.action] { onAction(action); });
    }
}

// Qt may call this after the window was hidden. A window manager moves the window when it adds the frame, so
// the frame's size is known after the first call.
void MainWindow::moveEvent(QMoveEvent*) {
    if (!isMinimized()) position_ = pos();
    fitScreen();
}

void MainWindow::resizeEvent(QResizeEvent*) {
    if (view_) view_->setGeometry(rect());
}

}  // namespace tarnik
