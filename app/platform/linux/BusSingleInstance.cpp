#include "app/platform/linux/BusSingleInstance.h"

#include <QDBusError>
#include <utility>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

using Outcome = SingleInstance::Outcome;

// Each round ends with the end of another copy, so that a few of them are many.
constexpr int mostRounds = 8;

QDBusMessage endCall(const QString& copy) {
    return busCall({copy, QLatin1String(ApplicationObject::path)},
                   QLatin1String(ApplicationObject::ownInterface),
                   QLatin1String(ApplicationObject::waitForEnd));
}

}  // namespace

BusSingleInstance::BusSingleInstance(const QDBusConnection& bus, std::shared_ptr<OpenRequests> requests,
                                     std::optional<std::string> activationToken, Bounds bounds)
    : bus_(bus),
      requests_(requests),
      activationToken_(std::move(activationToken)),
      bounds_(bounds),
      object_(bus, std::move(requests)) {}

Outcome BusSingleInstance::acquire(const SingleInstance::LaunchRequest& request) {
    for (int round = 0; round < mostRounds; ++round) {
        const Claim claim = claimName();
        if (claim == Claim::impossible) break;
        if (claim == Claim::ours) return goOn(Outcome::primary, request.link);
        const auto copy = otherCopy();
        if (!copy) continue;
        const Reply reply = handOver(*copy, request);
        if (reply == Reply::taken || reply == Reply::silent) return Outcome::handedOver;
        if (reply == Reply::refused) break;
        if (reply == Reply::ending && !waitForEnd(*copy)) break;
    }
    return goOn(Outcome::unavailable, request.link);
}

Outcome BusSingleInstance::goOn(Outcome outcome, const std::optional<std::string>& link) {
    if (link) requests_->openLater(*link);
    return outcome;
}

BusSingleInstance::Claim BusSingleInstance::claimName() const {
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    constexpr uint exists = 3;
    const uint answer = busValue(callBus("RequestName", {ourBusName(), doNotQueue})).toUInt();
    if (answer == exists) return Claim::taken;
    return answer == primaryOwner ? Claim::ours : Claim::impossible;
}

std::optional<QString> BusSingleInstance::otherCopy() const {
    const QString owner = busValue(callBus("GetNameOwner", {ourBusName()})).toString();
    return owner.isEmpty() ? std::nullopt : std::optional(owner);
}

// Goes to the one copy that was asked for, not to whoever has the name by then.
BusSingleInstance::Reply BusSingleInstance::handOver(const QString& copy,
                                                     const SingleInstance::LaunchRequest& request) const {
    const QDBusMessage answer = call(messageTo(copy, request), bounds_.handOver);
    if (answer.type() == QDBusMessage::ReplyMessage) return Reply::taken;
    if (answer.errorName() == QLatin1String(ApplicationObject::endingError)) return Reply::ending;
    if (!isThere(copy)) return Reply::gone;
    return QDBusError(answer).type() == QDBusError::NoReply ? Reply::silent : Reply::refused;
}

QDBusMessage BusSingleInstance::messageTo(const QString& copy,
                                          const SingleInstance::LaunchRequest& request) const {
    const BusObject object{copy, QLatin1String(ApplicationObject::path)};
    const QString interface = QLatin1String(ApplicationObject::interface);
    const QVariantMap data = platformData(activationToken_);
    // Nothing that long is a link of ours.
    if (request.link && request.link->size() <= static_cast<std::size_t>(ApplicationObject::longestLink))
        return busCall(object, interface, QStringLiteral("Open"),
                       {QStringList(QString::fromStdString(*request.link)), data});
    if (!request.link && !request.wantsWindow) return endCall(copy);  // answered by a copy that goes on
    return busCall(object, interface, QStringLiteral("Activate"), {data});
}

bool BusSingleInstance::waitForEnd(const QString& copy) const {
    call(endCall(copy), bounds_.end);
    return !isThere(copy);
}

bool BusSingleInstance::isThere(const QString& copy) const {
    return busValue(callBus("NameHasOwner", {copy})).toBool();
}

QDBusMessage BusSingleInstance::call(const QDBusMessage& message, Seconds bound) const {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(bound).count();
    return bus_.call(message, QDBus::Block, static_cast<int>(milliseconds));
}

QDBusMessage BusSingleInstance::callBus(const char* operation, const QVariantList& arguments) const {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return call(
        busCall({bus, QStringLiteral("/org/freedesktop/DBus")}, bus, QLatin1String(operation), arguments),
        busCallBound);
}

}  // namespace tarnik
