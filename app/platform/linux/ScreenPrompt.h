#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/platform/linux/BusSignal.h"
#include "core/foundation/Time.h"

namespace tarnik {

// Has the portal ask the person whether this program may look at the screen, by asking for one picture of it,
// which is thrown away.
//
// Main thread. One dialogue at a time.
class ScreenPrompt {
public:
    using OnDone = std::function<void(bool permitted)>;

    // As long as a dialogue may stay open before it counts as refused.
    static constexpr Seconds patience = std::chrono::minutes(5);

    // Pictures are removed only from below these folders.
    ScreenPrompt(const QDBusConnection& bus, std::vector<std::string> pictureFolders);

    // Later, once; false as well where there is no portal.
    void ask(OnDone onDone);

private:
    void listen(const QString& request);
    void responded(const QDBusMessage& response);
    void done(bool permitted);

    const QDBusConnection bus_;
    const std::vector<std::string> pictureFolders_;
    OnDone onDone_;  // of the dialogue that is open
    QString request_;
    std::unique_ptr<BusSignal> response_;
    std::unique_ptr<QObject> call_;  // the context of the last one
    QTimer patience_;
    int count_ = 0;
};

}  // namespace tarnik
