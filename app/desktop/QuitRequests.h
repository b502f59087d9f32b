#pragma once

#include <QObject>
#include <functional>

namespace tarnik {

// Delays a quit request of the system, such as the end of the session, until everything has stopped. A
// nested event loop runs meanwhile, even if a modal window is open.
//
// Owned by the desktop program. Main thread only. Create it when the application object exists.
class QuitRequests : public QObject {
public:
    struct Deps {
        std::function<bool()> isQuitting;
        std::function<void()> quit;  // starts the shutdown, which ends the main event loop
    };

    explicit QuitRequests(Deps deps);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const Deps deps_;
};

}  // namespace tarnik
