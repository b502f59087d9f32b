#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>

#include "core/foundation/Time.h"

namespace tarnik {

// The time limit for the reply of a service that already runs.
inline constexpr Seconds busCallTimeout = std::chrono::seconds(10);

// Keeps the D-Bus library from starting a private session bus if no bus exists. A private bus would be
// useless and would outlive this program. Changes this process's environment, but not the environment that
// children inherit. Call it before the first connection to the bus, while no other thread reads the
// environment.
void disableBusAutolaunch();

// Returns our well-known name on the bus. It equals the name of our desktop entry.
QString ourBusName();

// The address of a D-Bus object.
struct BusObject {
    QString service;
    QString path;
};

// Returns the message of a method call. The call doesn't start the service unless the caller enables the
// start in the message.
QDBusMessage busCall(const BusObject& object, const QString& interface, const QString& operation,
                     const QVariantList& arguments = {});
// Returns the message of a call that reads a property.
QDBusMessage propertyCall(const BusObject& object, const QString& interface, const QString& property);

// Sends the call and passes the reply to `onReply`. If the bus is missing or the call times out, the reply is
// no ReplyMessage. Calls `onReply` after this function has returned, and not after `context` was destroyed.
// Main thread only.
void callBusAsync(const QDBusConnection& bus, const QDBusMessage& call, Seconds timeout, QObject& context,
                  std::function<void(const QDBusMessage& reply)> onReply);

// Returns the value of a reply with one argument, unwrapped from its variants. Returns an invalid value for
// any other reply.
QVariant replyValue(const QDBusMessage& reply);

}  // namespace tarnik
