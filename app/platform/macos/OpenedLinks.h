#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <vector>

namespace tarnik {

// The links of our scheme that the system has us open. Qt takes the system's event, which comes once its loop
// runs even when we were started for the link, and sends it on to the application object, to which this
// listens. A link that comes before anybody asks for links waits.
//
// Main thread. Lives as long as whoever asks.
class OpenedLinks : public QObject {
public:
    using Handler = std::function<void(const std::string& link)>;

    // When the application object exists, and its loop doesn't run yet.
    OpenedLinks();

    void setHandler(Handler handler);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handler handler_;
    std::vector<std::string> waiting_;
};

}  // namespace tarnik
