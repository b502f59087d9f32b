#include <QGuiApplication>
#include <memory>
#include <utility>

#include "app/platform/macos/LinkEvents.h"
#include "app/platform/macos/MacOperations.h"
#include "app/platform/macos/ReopenRequests.h"
#include "app/platform/macos/ShowWindowNotice.h"

namespace tarnik {

namespace {

// Returns an operation that makes a listener for each handler. The operation owns the latest listener.
template <class Listener, class Handler = std::function<void()>>
std::function<void(Handler)> registering() {
    return [listener = std::make_shared<std::unique_ptr<Listener>>()](Handler handler) {
        listener->reset();
        *listener = std::make_unique<Listener>(std::move(handler));
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
    return {.onLink = registering<LinkEvents, std::function<void(const std::string& link)>>(),
            .onSecondOpen = registering<ShowWindowNotice>(),
            .onReopen = registering<ReopenRequests>(),
            .onBecameActive = onBecameActive};
}

}  // namespace tarnik
