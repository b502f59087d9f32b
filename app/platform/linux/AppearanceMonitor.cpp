#include "app/platform/linux/AppearanceMonitor.h"

#include <QDBusArgument>
#include <QMap>
#include <QStringList>
#include <QVariantMap>
#include <utility>

#include "app/platform/linux/DesktopPortal.h"
#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

QString appearanceNamespace() {
    return QStringLiteral("org.freedesktop.appearance");
}

// Has the choice of GNOME and of the desktops that follow it. Portals before 1.20 lack "reduced-motion".
QString interfaceNamespace() {
    return QStringLiteral("org.gnome.desktop.interface");
}

ColourScheme schemeOf(uint number) {
    if (number == 1) return ColourScheme::dark;
    return number == 2 ? ColourScheme::light : ColourScheme::unknown;
}

// The portal reports "no accent colour" as components out of range.
std::optional<AccentColour> accentOf(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>()) return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)")) return std::nullopt;
    AccentColour colour;
    argument.beginStructure();
    argument >> colour.red >> colour.green >> colour.blue;
    argument.endStructure();
    for (const double component : {colour.red, colour.green, colour.blue}) {
        if (!(component >= 0 && component <= 1)) return std::nullopt;
    }
    return colour;
}

AppearanceSettings settingsOf(const QDBusMessage& reply) {
    if (reply.signature() != QLatin1String("a{sa{sv}}")) return {};
    const auto namespaces = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    const auto values = namespaces.value(appearanceNamespace());
    const auto animations = namespaces.value(interfaceNamespace()).value(QStringLiteral("enable-animations"));
    const bool isReduced = values.value(QStringLiteral("reduced-motion")).toUInt() == 1 ||
                           (animations.isValid() && !animations.toBool());
    const bool isHigher = values.value(QStringLiteral("contrast")).toUInt() == 1;
    return {.scheme = schemeOf(values.value(QStringLiteral("color-scheme")).toUInt()),
            .options = {.accent = accentOf(values.value(QStringLiteral("accent-color"))),
                        .contrast = isHigher ? Contrast::higher : Contrast::usual},
            .motion = isReduced ? Motion::reduced : Motion::usual};
}

QString settingsInterface() {
    return QStringLiteral("org.freedesktop.portal.Settings");
}

BusSignal::Match changeIn(const QString& settingsNamespace) {
    return {.path = desktopPortal().path,
            .interface = settingsInterface(),
            .name = QStringLiteral("SettingChanged"),
            .firstArgument = settingsNamespace};
}

BusQueryMonitor::Query query() {
    return {.call = busCall(desktopPortal(), settingsInterface(), QStringLiteral("ReadAll"),
                            {QStringList{appearanceNamespace(), interfaceNamespace()}}),
            .signals = {changeIn(appearanceNamespace()), changeIn(interfaceNamespace())},
            .onServiceEnd = BusQueryMonitor::OnServiceEnd::keepReply};
}

}  // namespace

AppearanceMonitor::AppearanceMonitor(const QDBusConnection& bus, OnSettings onSettings)
    : onSettings_(std::move(onSettings)),
      monitor_(bus, query(), [this](const QDBusMessage& reply) { replied(reply); }) {}

void AppearanceMonitor::replied(const QDBusMessage& reply) {
    const AppearanceSettings settings = settingsOf(reply);
    if (std::exchange(reported_, settings) == settings) return;
    onSettings_(settings);
}

}  // namespace tarnik
