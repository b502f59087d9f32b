#include "app/platform/macos/MacEvents.h"

#include <QGuiApplication>
#include <memory>
#include <utility>

#include "app/platform/macos/OpenedLinks.h"
#include "app/platform/macos/ReopenRequests.h"
#include "app/platform/macos/ShowWindowNotice.h"

namespace tarnik {

namespace {

// Makes a listener for each handler, and keeps the last one for as long as the operation is kept.
template <class Listener>
std::function<void(std::function<void()>)> keeping() {
    return [kept = std::make_shared<std::unique_ptr<Listener>>()](std::function<void()> handler) {
        kept->reset();
        *kept = std::make_unique<Listener>(std::move(handler));
    };
}

void onBecameActive(std::function<void()> handler) {
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, qGuiApp,
                     [handler = std::move(handler)](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive) handler();
                     });
}

}  // namespace

SystemEvents macEvents() {
    return {.onLink = [links = std::make_shared<OpenedLinks>()](
                          OpenedLinks::Handler handler) { links->setHandler(std::move(handler)); },
            .onSecondOpen = keeping<ShowWindowNotice>(),
            .onReopen = keeping<ReopenRequests>(),
            .onBecameActive = onBecameActive};
}

}  // namespace tarnik
