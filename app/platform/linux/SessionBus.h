#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>

#include "core/foundation/Time.h"

namespace tarnik {

// Whoever answers at all has answered by then.
inline constexpr Seconds busCallBound = std::chrono::seconds(10);

// Our name on the bus, which is that of our desktop entry, too.
QString ourBusName();

// An object, addressed by the name that its program has on the bus.
struct BusObject {
    QString service;
    QString path;
};

// Doesn't start the program behind the name, unless the message is told so.
QDBusMessage busCall(const BusObject& object, const QString& interface, const QString& operation,
                     const QVariantList& arguments = {});
QDBusMessage busPropertyCall(const BusObject& object, const QString& interface, const QString& property);

// Sends the call and hands on the answer: an error too, also for a bus that isn't there or doesn't answer
// within `bound`. Never at once, and not once `context` is gone. Main thread.
void callBusAsync(const QDBusConnection& bus, const QDBusMessage& call, Seconds bound, QObject& context,
                  std::function<void(const QDBusMessage& answer)> onAnswer);

// The one value of an answer, without the variants around it; invalid for an error.
QVariant busValue(const QDBusMessage& answer);

}  // namespace tarnik
