#include "app/desktop/OpenedLinks.h"

#include <QCoreApplication>
#include <QFileOpenEvent>
#include <utility>

namespace tarnik {

namespace {

// Qt treats an address that it can't parse as a file path.
std::string textOf(const QFileOpenEvent& event) {
    const QUrl url = event.url();
    return url.isLocalFile() ? event.file().toStdString() : url.toEncoded().toStdString();
}

}  // namespace

OpenedLinks::OpenedLinks() {
    QCoreApplication::instance()->installEventFilter(this);
}

void OpenedLinks::setHandler(Handler handler) {
    handler_ = std::move(handler);
    if (const auto link = std::exchange(waiting_, std::nullopt)) handler_(*link);
}

bool OpenedLinks::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::FileOpen) return false;
    auto link = textOf(*static_cast<QFileOpenEvent*>(event));
    if (handler_) {
        handler_(link);
    } else {
        waiting_ = std::move(link);
    }
    return true;
}

}  // namespace tarnik
