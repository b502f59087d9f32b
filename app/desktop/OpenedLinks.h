#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <string>

namespace tarnik {

// Receives the links that the toolkit reports as a QFileOpenEvent to the application object. On macOS these
// are the links with our scheme that no handler of the platform receives. Links are queued until a handler is
// set.
//
// Owned by the desktop program. Main thread only.
class OpenedLinks : public QObject {
public:
    using Handler = std::function<void(const std::string& link)>;

    // Call it when the application object exists and before the event loop runs.
    OpenedLinks();

    void setHandler(Handler handler);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handler handler_;
    std::optional<std::string> waiting_;
};

}  // namespace tarnik
