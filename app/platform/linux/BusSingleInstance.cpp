#include "app/platform/linux/BusSingleInstance.h"

#include <QDBusError>
#include <utility>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

using Outcome = SingleInstance::Outcome;
using LaunchRequest = SingleInstance::LaunchRequest;

// The limit for the rounds of acquire(). The next round begins after another instance has exited.
constexpr int maxRounds = 8;

QDBusMessage endCall(const QString& owner) {
    return busCall({owner, QLatin1String(ApplicationObject::path)},
                   QLatin1String(ApplicationObject::ownInterface),
                   QLatin1String(ApplicationObject::waitForEnd));
}

}  // namespace

BusSingleInstance::BusSingleInstance(const QDBusConnection& bus, std::shared_ptr<OpenRequests> requests,
                                     std::optional<std::string> activationToken, Timeouts timeouts)
    : bus_(bus),
      requests_(requests),
      activationToken_(std::move(activationToken)),
      timeouts_(timeouts),
      object_(bus, std::move(requests)) {}

Outcome BusSingleInstance::acquire(const LaunchRequest& request) {
    for (int round = 0; round < maxRounds; ++round) {
        const Claim claim = claimName();
        if (claim == Claim::impossible) break;
        if (claim == Claim::owned) return proceed(Outcome::primary, request.link);
        const auto other = owner();
        if (!other) continue;
        const Reply reply = handOver(*other, request);
        if (reply == Reply::accepted || reply == Reply::silent) return Outcome::handedOver;
        if (reply == Reply::refused) break;
        if (reply == Reply::ending && !waitForEnd(*other)) break;
    }
    return proceed(Outcome::unavailable, request.link);
}

Outcome BusSingleInstance::proceed(Outcome outcome, const std::optional<std::string>& link) {
    if (link) requests_->openLater(*link);
    return outcome;
}

BusSingleInstance::Claim BusSingleInstance::claimName() const {
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    constexpr uint exists = 3;
    const uint result = replyValue(callBus("RequestName", {ourBusName(), doNotQueue})).toUInt();
    if (result == exists) return Claim::taken;
    return result == primaryOwner ? Claim::owned : Claim::impossible;
}

std::optional<QString> BusSingleInstance::owner() const {
    const QString owner = replyValue(callBus("GetNameOwner", {ourBusName()})).toString();
    return owner.isEmpty() ? std::nullopt : std::optional(owner);
}

// `owner` is the owner's unique name, because the well-known name may get another owner meanwhile.
BusSingleInstance::Reply BusSingleInstance::handOver(const QString& owner,
                                                     const LaunchRequest& request) const {
    const QDBusMessage reply = call(requestCall(owner, request), timeouts_.handOver);
    if (reply.type() == QDBusMessage::ReplyMessage) return Reply::accepted;
    if (reply.errorName() == QLatin1String(ApplicationObject::endingError)) return Reply::ending;
    if (!isConnected(owner)) return Reply::gone;
    return QDBusError(reply).type() == QDBusError::NoReply ? Reply::silent : Reply::refused;
}

QDBusMessage BusSingleInstance::requestCall(const QString& owner, const LaunchRequest& request) const {
    const BusObject object{owner, QLatin1String(ApplicationObject::path)};
    const QString interface = QLatin1String(ApplicationObject::interface);
    const QVariantMap data = platformData(activationToken_);
    // A longer text isn't a link that the owner accepts.
    if (request.link && request.link->size() <= static_cast<std::size_t>(ApplicationObject::maxLinkBytes))
        return busCall(object, interface, QStringLiteral("Open"),
                       {QStringList(QString::fromStdString(*request.link)), data});
    // A start at login has no request for a running owner. The owner replies to this call at once.
    if (!request.link && !request.wantsWindow) return endCall(owner);
    return busCall(object, interface, QStringLiteral("Activate"), {data});
}

bool BusSingleInstance::waitForEnd(const QString& owner) const {
    call(endCall(owner), timeouts_.end);
    return !isConnected(owner);
}

bool BusSingleInstance::isConnected(const QString& owner) const {
    return replyValue(callBus("NameHasOwner", {owner})).toBool();
}

QDBusMessage BusSingleInstance::call(const QDBusMessage& message, Seconds timeout) const {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(timeout).count();
    return bus_.call(message, QDBus::Block, static_cast<int>(milliseconds));
}

QDBusMessage BusSingleInstance::callBus(const char* operation, const QVariantList& arguments) const {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return call(
        busCall({bus, QStringLiteral("/org/freedesktop/DBus")}, bus, QLatin1String(operation), arguments),
        busCallTimeout);
}

}  // namespace tarnik
