#include "app/views/MainWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QShortcut>

#include "app/model/WindowTexts.h"
#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"

namespace tarnik {
namespace {

constexpr QSize windowSize(460, 560);

}  // namespace

MainWindow::MainWindow(WindowContent content, MainView::OnIntent onIntent)
    : content_(std::move(content)), onIntent_(std::move(onIntent)) {
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    setWindowTitle(qtText(WindowTexts::product));
    setWindowIcon(applicationIcon());
    setFixedSize(windowSize);

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
    raise();
    activateWindow();
}

// A screen may have gone meanwhile, with the place on it.
QPoint MainWindow::placeToShow() const {
    const QPoint middle = rect().center();
    if (place_ && QGuiApplication::screenAt(*place_ + middle)) return *place_;
    return screen()->availableGeometry().center() - middle;
}

void MainWindow::setOnClose(OnClose onClose) {
    onClose_ = std::move(onClose);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    const auto onClose = onClose_;  // which may be exchanged meanwhile
    if (onClose.closed) onClose.closed();
    event->setAccepted(!(onClose.stays && onClose.stays()));
}

// May be told only after the window was hidden.
void MainWindow::moveEvent(QMoveEvent*) {
    if (!isMinimized()) place_ = pos();
}

}  // namespace tarnik
