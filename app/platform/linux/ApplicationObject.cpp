#include "app/platform/linux/ApplicationObject.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QGuiApplication>
#include <QStringList>
#include <algorithm>
#include <utility>

namespace tarnik {
namespace {

constexpr qsizetype maxTokenLength = 1024;

QString activationTokenKey() {
    return QStringLiteral("activation-token");
}

bool isToken(const QString& text) {
    const auto isPlain = [](QChar character) { return character > QChar(' ') && character < QChar(127); };
    return !text.isEmpty() && text.size() <= maxTokenLength && std::ranges::all_of(text, isPlain);
}

}  // namespace

QVariantMap platformData(const std::optional<std::string>& activationToken) {
    const QString token = QString::fromStdString(activationToken.value_or(""));
    return isToken(token) ? QVariantMap{{activationTokenKey(), token}} : QVariantMap();
}

void applyPlatformData(const QVariantMap& data) {
    const QString token = data.value(activationTokenKey()).toString();
    // Qt reads the token from the environment for Wayland windows only. On other window systems the
    // environment is not changed.
    if (isToken(token) && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", token.toLatin1());
}

ApplicationObject::ApplicationObject(QDBusConnection bus, std::shared_ptr<OpenRequests> requests)
    : requests_(std::move(requests)) {
    bus.registerVirtualObject(QLatin1String(path), this);
}

QString ApplicationObject::introspect(const QString&) const {
    return QStringLiteral(
        "<interface name=\"org.freedesktop.Application\">"
        "<method name=\"Activate\"><arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
        "<method name=\"Open\"><arg type=\"as\" name=\"uris\" direction=\"in\"/>"
        "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
        "<method name=\"ActivateAction\"><arg type=\"s\" name=\"action_name\" direction=\"in\"/>"
        "<arg type=\"av\" name=\"parameter\" direction=\"in\"/>"
        "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
        "</interface>");
}

bool ApplicationObject::handleMessage(const QDBusMessage& message, const QDBusConnection& bus) {
    const bool isOwn = message.interface() == QLatin1String(ownInterface);
    if (isOwn && message.member() == QLatin1String(waitForEnd)) {
        if (!isEnding_) bus.send(message.createReply());
        return true;
    }
    const bool isForUs = message.interface().isEmpty() || message.interface() == QLatin1String(interface);
    if (!isForUs || message.path() != QLatin1String(path)) return false;
    const QDBusMessage answer = reply(message);
    if (answer.type() == QDBusMessage::InvalidMessage) return false;
    if (message.isReplyRequired()) bus.send(answer);
    return true;
}

QDBusMessage ApplicationObject::reply(const QDBusMessage& call) {
    const QString signature = call.member() + QLatin1Char(' ') + call.signature();
    const bool opens = signature == QLatin1String("Open asa{sv}");
    const bool activates = signature == QLatin1String("Activate a{sv}");
    if (signature == QLatin1String("ActivateAction sava{sv}"))
        return call.createReply();  // we have no actions
    if (!opens && !activates) return {};
    if (isEnding_)
        return call.createErrorReply(QLatin1String(endingError), QStringLiteral("tarnik is ending"));
    return opens ? open(call) : activate(call);
}

QDBusMessage ApplicationObject::open(const QDBusMessage& call) {
    const QStringList links = call.arguments().at(0).toStringList();
    if (links.isEmpty()) return activate(call);
    const auto isTooLong = [](const QString& link) { return link.toUtf8().size() > maxLinkBytes; };
    if (links.size() > maxLinks || std::ranges::any_of(links, isTooLong))
        return call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("too many or too long links"));
    applyPlatformData(qdbus_cast<QVariantMap>(call.arguments().at(1)));
    // The links are accepted before the reply, because the caller may drop them after the reply.
    for (const QString& link : links) requests_->open(link.toStdString());
    return call.createReply();
}

QDBusMessage ApplicationObject::activate(const QDBusMessage& call) {
    applyPlatformData(qdbus_cast<QVariantMap>(call.arguments().constLast()));
    requests_->secondOpen();
    return call.createReply();
}

}  // namespace tarnik
