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

// Makes the portal ask the user whether this program may read the screen. Only a request for a screenshot
// prompts the user. The screenshot is deleted at once.
//
// Main thread only. Call ask() again only after its `onDone` was called.
class ScreenPrompt {
public:
    using OnDone = std::function<void(bool granted)>;

    // A dialog that stays open longer counts as refused.
    static constexpr Seconds timeout = std::chrono::minutes(5);

    // Screenshots are deleted only inside `pictureFolders`.
    ScreenPrompt(const QDBusConnection& bus, std::vector<std::string> pictureFolders);

    // Calls `onDone` once, after ask() has returned. Passes true if the user allows the access. Passes false
    // if the user refuses, the portal fails or is absent, or the time-out has passed.
    void ask(OnDone onDone);

private:
    void subscribe(const QString& request);
    void responded(const QDBusMessage& response);
    void done(bool granted);

    const QDBusConnection bus_;
    const std::vector<std::string> pictureFolders_;
    OnDone onDone_;  // null while no dialog is open
    QString request_;
    std::unique_ptr<BusSignal> response_;
    std::unique_ptr<QObject> call_;  // the context of the last call
    QTimer timer_;
    int count_ = 0;
};

// Deletes a screenshot that was just made for us. Ignores the file unless it is regular, this user owns it,
// it has one hard link, it is below one of `folders`, and it was written within the last ten minutes.
void removeScreenshot(const std::string& path, const std::vector<std::string>& folders);

}  // namespace tarnik
