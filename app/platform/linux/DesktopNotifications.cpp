#include "app/platform/linux/DesktopNotifications.h"

#include <QVariantMap>
#include <utility>

#include "app/platform/linux/ApplicationObject.h"
#include "app/platform/linux/SessionBus.h"
#include "app/texts/NoticeTexts.h"
#include "app/texts/Translation.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

constexpr Seconds startTimeout = std::chrono::seconds(30);  // the service may have to be started
constexpr uchar normalUrgency = 1;
constexpr int defaultExpiry = -1;

// The action that a click on the notice itself performs.
const char* const defaultAction = "default";

const BusObject& notifications() {
    static const BusObject object{QStringLiteral("org.freedesktop.Notifications"),
                                  QStringLiteral("/org/freedesktop/Notifications")};
    return object;
}

QDBusMessage notificationsCall(const QString& operation, const QVariantList& arguments = {}) {
    return busCall(notifications(), notifications().service, operation, arguments);
}

QDBusMessage capabilitiesCall() {
    return notificationsCall(QStringLiteral("GetCapabilities"));
}

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// Services without the action could show it as a dialog's button, so they don't receive it.
QStringList actionsFor(const QStringList& capabilities) {
    if (!capabilities.contains(QStringLiteral("actions"))) return {};
    return {QLatin1String(defaultAction), text(translated(NoticeTexts::open))};
}

}  // namespace

DesktopNotifications::DesktopNotifications(const QDBusConnection& bus)
    : bus_(bus), monitor_(bus, {.call = capabilitiesCall()}, [this](const QDBusMessage& reply) {
          serviceReplied(reply);
      }) {
    const BusObject daemon{QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus")};
    callBusAsync(bus_, busCall(daemon, daemon.service, QStringLiteral("ListActivatableNames")),
                 busCallTimeout, context_, [this](const QDBusMessage& reply) {
                     isActivatable_ = replyValue(reply).toStringList().contains(notifications().service);
                 });
}

void DesktopNotifications::show(const std::string& id, const UserNotice& notice) {
    auto& entry = entries_[id];
    entry.wanted = notice;
    entry.isWithdrawn = false;
    if (capabilities_)
        send(entry);
    else
        startService();
}

void DesktopNotifications::withdraw(const std::string& id) {
    const auto found = entries_.find(id);
    if (found == entries_.end()) return;
    auto& entry = found->second;
    entry.wanted.reset();
    entry.isWithdrawn = true;
    if (!entry.isPending) close(entry);
}

// Each service has numbers of its own, so the numbers of an earlier service are forgotten.
void DesktopNotifications::serviceReplied(const QDBusMessage& reply) {
    const bool runs = reply.type() == QDBusMessage::ReplyMessage;
    if (std::exchange(owner_, runs ? reply.service() : QString()) != owner_)
        for (auto& [id, entry] : entries_) entry.number = 0;
    capabilities_ = runs ? std::optional(replyValue(reply).toStringList()) : std::nullopt;
    if (!capabilities_) return;
    for (auto& [id, entry] : entries_) send(entry);
}

// The monitor reports the started service. If the service can't be started, the notices are dropped.
void DesktopNotifications::startService() {
    auto call = capabilitiesCall();
    call.setAutoStartService(true);
    callBusAsync(bus_, call, startTimeout, context_, [this](const QDBusMessage& reply) {
        if (reply.type() == QDBusMessage::ReplyMessage) return serviceReplied(reply);
        for (auto& [id, entry] : entries_) entry.wanted.reset();
    });
}

void DesktopNotifications::send(Entry& entry) {
    if (entry.isPending || !entry.wanted) return;
    subscribe();
    const auto notice = *std::exchange(entry.wanted, std::nullopt);
    const bool hasMarkup = capabilities_->contains(QStringLiteral("body-markup"));
    const QString body = text(notice.body);
    const QVariantMap hints{{QStringLiteral("desktop-entry"), ourBusName()},
                            {QStringLiteral("urgency"), QVariant::fromValue(normalUrgency)}};
    entry.isPending = true;
    callBusAsync(bus_,
                 notificationsCall(QStringLiteral("Notify"),
                                   {text(TarnikIdentity::appName), entry.number, ourBusName(),
                                    text(notice.title), hasMarkup ? body.toHtmlEscaped() : body,
                                    actionsFor(*capabilities_), hints, defaultExpiry}),
                 busCallTimeout, context_, [this, &entry](const QDBusMessage& reply) { sent(entry, reply); });
}

void DesktopNotifications::sent(Entry& entry, const QDBusMessage& reply) {
    entry.isPending = false;
    entry.number = reply.service() == owner_ ? replyValue(reply).toUInt() : 0;
    if (entry.isWithdrawn) return close(entry);
    if (capabilities_) send(entry);
}

void DesktopNotifications::close(Entry& entry) {
    const uint number = std::exchange(entry.number, 0);
    if (number == 0) return;
    bus_.send(notificationsCall(QStringLiteral("CloseNotification"), {number}));  // the reply does not matter
}

// The signals of a service concern the notices of all programs, so they are not received before a notice is
// shown. shownEntry() checks the sender.
void DesktopNotifications::subscribe() {
    if (!signals_.empty()) return;
    const auto onSignal = [this](const char* name, auto handler) {
        const BusSignal::Match match{notifications().path, notifications().service, QLatin1String(name)};
        signals_.push_back(
            std::make_unique<BusSignal>(bus_, match, [this, handler](const QDBusMessage& signal) {
                if (auto* entry = shownEntry(signal)) handler(*entry, signal.arguments().value(1));
            }));
    };
    // The token lets the window that opens next have the focus. It precedes the action.
    onSignal("ActivationToken", [](Entry&, const QVariant& token) {
        applyPlatformData({{QStringLiteral("activation-token"), token}});
    });
    onSignal("ActionInvoked", [this](Entry&, const QVariant& action) {
        if (action.toString() == QLatin1String(defaultAction) && onClick_) onClick_();
    });
    onSignal("NotificationClosed", [](Entry& entry, const QVariant&) { entry.number = 0; });
}

DesktopNotifications::Entry* DesktopNotifications::shownEntry(const QDBusMessage& signal) {
    const uint number = signal.arguments().value(0).toUInt();
    if (number == 0 || signal.service() != owner_) return nullptr;
    for (auto& [id, entry] : entries_)
        if (entry.number == number) return &entry;
    return nullptr;
}

}  // namespace tarnik
