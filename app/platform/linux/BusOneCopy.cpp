#include "app/platform/linux/BusOneCopy.h"

#include <QDBusError>
#include <utility>

#include "app/platform/linux/BusCall.h"

namespace tarnik {
namespace {

using Standing = OneCopy::Standing;

// Each round ends with the end of another copy, so that a few of them are many.
constexpr int mostRounds = 8;

QDBusMessage endCall(const QString& copy) {
    return busCall({copy, QLatin1String(ApplicationObject::path)},
                   QLatin1String(ApplicationObject::ownInterface),
                   QLatin1String(ApplicationObject::waitForEnd));
}

}  // namespace

BusOneCopy::BusOneCopy(const QDBusConnection& bus, std::shared_ptr<OpenRequests> requests,
                       std::optional<std::string> activationToken, Bounds bounds)
    : bus_(bus),
      requests_(requests),
      activationToken_(std::move(activationToken)),
      bounds_(bounds),
      object_(bus, std::move(requests)) {}

Standing BusOneCopy::settle(const OneCopy::Start& start) {
    for (int round = 0; round < mostRounds; ++round) {
        const Claim claim = claimName();
        if (claim == Claim::impossible) break;
        if (claim == Claim::ours) return goOn(Standing::only, start.link);
        const auto copy = otherCopy();
        if (!copy) continue;
        const Reply reply = handOver(*copy, start);
        if (reply == Reply::taken || reply == Reply::silent) return Standing::handedOver;
        if (reply == Reply::refused) break;
        if (reply == Reply::ending && !waitForEnd(*copy)) break;
    }
    return goOn(Standing::alone, start.link);
}

Standing BusOneCopy::goOn(Standing standing, const std::optional<std::string>& link) {
    if (link) requests_->openLater(*link);
    return standing;
}

BusOneCopy::Claim BusOneCopy::claimName() const {
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    constexpr uint exists = 3;
    const uint answer = busValue(callBus("RequestName", {ourBusName(), doNotQueue})).toUInt();
    if (answer == exists) return Claim::taken;
    return answer == primaryOwner ? Claim::ours : Claim::impossible;
}

std::optional<QString> BusOneCopy::otherCopy() const {
    const QString owner = busValue(callBus("GetNameOwner", {ourBusName()})).toString();
    return owner.isEmpty() ? std::nullopt : std::optional(owner);
}

// Goes to the one copy that was asked for, not to whoever has the name by then.
BusOneCopy::Reply BusOneCopy::handOver(const QString& copy, const OneCopy::Start& start) const {
    const QDBusMessage answer = call(messageTo(copy, start), bounds_.handOver);
    if (answer.type() == QDBusMessage::ReplyMessage) return Reply::taken;
    if (answer.errorName() == QLatin1String(ApplicationObject::endingError)) return Reply::ending;
    if (!isThere(copy)) return Reply::gone;
    return QDBusError(answer).type() == QDBusError::NoReply ? Reply::silent : Reply::refused;
}

QDBusMessage BusOneCopy::messageTo(const QString& copy, const OneCopy::Start& start) const {
    const BusObject object{copy, QLatin1String(ApplicationObject::path)};
    const QString interface = QLatin1String(ApplicationObject::interface);
    const QVariantMap data = platformData(activationToken_);
    // Nothing that long is a link of ours.
    if (start.link && start.link->size() <= static_cast<std::size_t>(ApplicationObject::longestLink))
        return busCall(object, interface, QStringLiteral("Open"),
                       {QStringList(QString::fromStdString(*start.link)), data});
    if (!start.link && !start.wantsWindow) return endCall(copy);  // answered by a copy that goes on
    return busCall(object, interface, QStringLiteral("Activate"), {data});
}

bool BusOneCopy::waitForEnd(const QString& copy) const {
    call(endCall(copy), bounds_.end);
    return !isThere(copy);
}

bool BusOneCopy::isThere(const QString& copy) const {
    return busValue(callBus("NameHasOwner", {copy})).toBool();
}

QDBusMessage BusOneCopy::call(const QDBusMessage& message, Seconds bound) const {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(bound).count();
    return bus_.call(message, QDBus::Block, static_cast<int>(milliseconds));
}

QDBusMessage BusOneCopy::callBus(const char* operation, const QVariantList& arguments) const {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return call(
        busCall({bus, QStringLiteral("/org/freedesktop/DBus")}, bus, QLatin1String(operation), arguments),
        busCallBound);
}

}  // namespace tarnik
