#include "app/platform/linux/BusSignal.h"

#include <QStringList>
#include <utility>

namespace tarnik {

BusSignal::BusSignal(QDBusConnection bus, const Match& match, Handler handler)
    : handler_(std::move(handler)) {
    const QStringList arguments =
        match.firstArgument.isEmpty() ? QStringList() : QStringList(match.firstArgument);
    bus.connect(match.service, match.path, match.interface, match.name, arguments, QString(), this,
                SLOT(receive(QDBusMessage)));
}

}  // namespace tarnik
