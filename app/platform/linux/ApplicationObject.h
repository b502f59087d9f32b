#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <memory>
#include <optional>
#include <string>

#include "app/platform/linux/OpenRequests.h"

namespace tarnik {

// The application as other programs see it on the bus: org.freedesktop.Application, as desktops know it, and
// for later copies of this program a way to wait for our end.
//
// Main thread.
class ApplicationObject : public QDBusVirtualObject {
public:
    static constexpr const char* path = "/com/tarnik/node";
    static constexpr const char* interface = "org.freedesktop.Application";
    static constexpr const char* ownInterface = "com.tarnik.node";

    // Is answered at once while we go on, and never while we end: the bus then tells the asker of our end.
    static constexpr const char* waitForEnd = "WaitForEnd";
    // The error that whoever opens something gets while we end; it was not taken.
    static constexpr const char* endingError = "com.tarnik.node.Error.Ending";

    static constexpr int mostLinks = 16;
    static constexpr int longestLink = 65536;

    ApplicationObject(QDBusConnection bus, std::shared_ptr<OpenRequests> requests);

    void refuseRequests() { isEnding_ = true; }

    QString introspect(const QString& objectPath) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

private:
    QDBusMessage answer(const QDBusMessage& call);
    QDBusMessage open(const QDBusMessage& call);
    QDBusMessage activate(const QDBusMessage& call);

    const std::shared_ptr<OpenRequests> requests_;
    bool isEnding_ = false;
};

// The data that goes with a call of the interface, from the environment of a program that the desktop has
// started, and back: which click on the desktop is behind it. Lets us come to the front on Wayland.
QVariantMap platformData(const std::optional<std::string>& activationToken);
void takePlatformData(const QVariantMap& data);

}  // namespace tarnik
