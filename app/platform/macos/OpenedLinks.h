#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <vector>

namespace tarnik {

// Receives the links with our scheme that the system opens. Qt turns the system's event into a QFileOpenEvent
// for the application object. This class filters that event. If a link started the program, its event arrives
// when the event loop runs. Links are queued until a handler is set.
//
// Main thread only.
class OpenedLinks : public QObject {
public:
    using Handler = std::function<void(const std::string& link)>;

    // Call it when the application object exists and before the event loop runs.
    OpenedLinks();

    void setHandler(Handler handler);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handler handler_;
    std::vector<std::string> waiting_;
};

}  // namespace tarnik
