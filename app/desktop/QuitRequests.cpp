#include "app/desktop/QuitRequests.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <utility>

namespace tarnik {

QuitRequests::QuitRequests(Deps deps) : deps_(std::move(deps)) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool QuitRequests::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) return false;
    if (deps_.isQuitting()) return true;
    deps_.quit();
    QEventLoop().exec();  // ends with the main event loop
    return false;
}

}  // namespace tarnik
