#include "app/platform/linux/BusQueryMonitor.h"

#include <utility>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {

BusQueryMonitor::BusQueryMonitor(const QDBusConnection& bus, Question question, OnAnswer onAnswer)
    : bus_(bus), question_(std::move(question)), onAnswer_(std::move(onAnswer)) {
    listen({.path = QStringLiteral("/org/freedesktop/DBus"),
            .interface = QStringLiteral("org.freedesktop.DBus"),
            .name = QStringLiteral("NameOwnerChanged"),
            .firstArgument = question_.call.service()},
           [this](const QDBusMessage& signal) { ownerChanged(signal); });
    // libdbus says so itself once the bus has gone; what we ask then fails at once.
    listen({.path = QStringLiteral("/org/freedesktop/DBus/Local"),
            .interface = QStringLiteral("org.freedesktop.DBus.Local"),
            .name = QStringLiteral("Disconnected")},
           [this](const QDBusMessage&) { ask(); });
    for (const auto& hint : question_.hints) listen(hint, [this](const QDBusMessage&) { ask(); });
    ask();
    question_.call.setAutoStartService(false);  // or a program that fails at our question is started for ever
}

void BusQueryMonitor::listen(const BusSignal::Match& match, BusSignal::Handler handler) {
    signals_.push_back(std::make_unique<BusSignal>(bus_, match, std::move(handler)));
}

void BusQueryMonitor::ownerChanged(const QDBusMessage& signal) {
    const bool isGone = signal.arguments().value(2).toString().isEmpty();
    if (!isGone || question_.withoutProgram == WithoutProgram::ask) ask();
}

void BusQueryMonitor::ask() {
    if (isAsking_) {
        mustAskAgain_ = true;
        return;
    }
    isAsking_ = true;
    callBusAsync(bus_, question_.call, busCallBound, context_,
                 [this](const QDBusMessage& answer) { answered(answer); });
}

void BusQueryMonitor::answered(const QDBusMessage& answer) {
    isAsking_ = false;
    if (std::exchange(mustAskAgain_, false)) return ask();
    hasAnswer_ = true;
    onAnswer_(answer);
}

}  // namespace tarnik
