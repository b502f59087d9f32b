#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <memory>
#include <optional>
#include <string>

#include "app/platform/linux/OpenRequests.h"

namespace tarnik {

// Our object on the session bus. It implements org.freedesktop.Application for desktops. It also has a method
// of our own, by which a later instance waits for the end of this instance. Main thread only.
class ApplicationObject : public QDBusVirtualObject {
public:
    static constexpr const char* path = "/com/tarnik/node";
    static constexpr const char* interface = "org.freedesktop.Application";
    static constexpr const char* ownInterface = "com.tarnik.node";

    // A running instance replies at once. An ending instance never replies, so the caller gets an error from
    // the bus when the instance exits.
    static constexpr const char* waitForEnd = "WaitForEnd";
    // The error reply of an ending instance. The request was not accepted.
    static constexpr const char* endingError = "com.tarnik.node.Error.Ending";

    static constexpr int maxLinks = 16;
    static constexpr int maxLinkBytes = 65536;

    ApplicationObject(QDBusConnection bus, std::shared_ptr<OpenRequests> requests);

    void refuseRequests() { isEnding_ = true; }

    QString introspect(const QString& objectPath) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

private:
    QDBusMessage reply(const QDBusMessage& call);
    QDBusMessage open(const QDBusMessage& call);
    QDBusMessage activate(const QDBusMessage& call);

    const std::shared_ptr<OpenRequests> requests_;
    bool isEnding_ = false;
};

// Convert the activation token of a start to the `platform_data` argument of org.freedesktop.Application, and
// apply a received argument to this process. With the token our window can get the focus on Wayland.
QVariantMap platformData(const std::optional<std::string>& activationToken);
void applyPlatformData(const QVariantMap& data);

}  // namespace tarnik
