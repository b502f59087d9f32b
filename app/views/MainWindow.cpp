#include "app/views/MainWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QShortcut>
#include <QWindow>
#include <algorithm>

#include "app/model/WindowTexts.h"
#include "app/views/MenuKey.h"
#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"

namespace tarnik {
namespace {

constexpr QSize fullSize(460, 560);

// Height to leave for a title bar whose real height is unknown until the window is mapped.
constexpr QSize likelyFrame(0, 40);

// The top left corner nearest to `place` with the whole of `size` inside `area`.
QPoint inside(const QRect& area, QPoint place, QSize size) {
    const QPoint last(area.right() + 1 - size.width(), area.bottom() + 1 - size.height());
    return {std::max(area.left(), std::min(place.x(), last.x())),
            std::max(area.top(), std::min(place.y(), last.y()))};
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

// While the window system brings the window up; it is painted later, from the event loop. A layout would set
// the window's geometry anew, and so undo where the system has put it meanwhile.
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
    // Window managers choose a new place for a window that was hidden, unless they are asked.
    if (!isVisible()) move(placeToShow());
    if (isMinimized()) showNormal();
    show();
    if (!view_) makeView();
    if (!areaChanges_) {
        // Queued: the move to the other screen still has to end, and would undo a new size.
        connect(windowHandle(), &QWindow::screenChanged, this, &MainWindow::screenChanged,
                Qt::QueuedConnection);
        screenChanged();
    }
    raise();
    activateWindow();
}

// A screen may have gone meanwhile, with the place on it.
QPoint MainWindow::placeToShow() const {
    if (place_ && QGuiApplication::screenAt(*place_ + rect().center())) return *place_;
    const QRect area = screen()->availableGeometry();
    return inside(area, area.center() - rect().center(), outerSize(size()));
}

QSize MainWindow::outerSize(QSize inner) const {
    const QSize frame = frameGeometry().size() - size();
    return inner + (frame.height() > 0 ? frame : likelyFrame);
}

void MainWindow::fitScreen() {
    const QSize room = screen()->availableGeometry().size() - outerSize(QSize(0, 0));
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

void MainWindow::closeEvent(QCloseEvent* event) {
    const auto onClose = onClose_;  // which may be exchanged meanwhile
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

// May be told only after the window was hidden. A window manager moves a window when it adds the frame.
void MainWindow::moveEvent(QMoveEvent*) {
    if (!isMinimized()) place_ = pos();
    fitScreen();
}

void MainWindow::resizeEvent(QResizeEvent*) {
    if (view_) view_->setGeometry(rect());
}

}  // namespace tarnik
