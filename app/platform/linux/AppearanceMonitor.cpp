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

QString area() {
    return QStringLiteral("org.freedesktop.appearance");
}

ColourScheme schemeOf(uint number) {
    if (number == 1) return ColourScheme::dark;
    return number == 2 ? ColourScheme::light : ColourScheme::unknown;
}

// Without a choice its parts are out of range.
std::optional<AccentColour> accentOf(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>()) return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)")) return std::nullopt;
    AccentColour colour;
    argument.beginStructure();
    argument >> colour.red >> colour.green >> colour.blue;
    argument.endStructure();
    for (const double part : {colour.red, colour.green, colour.blue}) {
        if (!(part >= 0 && part <= 1)) return std::nullopt;
    }
    return colour;
}

AppearanceSettings choiceOf(const QDBusMessage& answer) {
    if (answer.signature() != QLatin1String("a{sa{sv}}")) return {};
    const auto areas = qdbus_cast<QMap<QString, QVariantMap>>(answer.arguments().constFirst());
    const auto chosen = areas.value(area());
    const bool isHigher = chosen.value(QStringLiteral("contrast")).toUInt() == 1;
    return {.scheme = schemeOf(chosen.value(QStringLiteral("color-scheme")).toUInt()),
            .options = {.accent = accentOf(chosen.value(QStringLiteral("accent-color"))),
                        .contrast = isHigher ? Contrast::higher : Contrast::usual}};
}

BusQueryMonitor::Question question() {
    const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
    return {.call = busCall(desktopPortal(), settings, QStringLiteral("ReadAll"), {QStringList(area())}),
            .hints = {{.path = desktopPortal().path,
                       .interface = settings,
                       .name = QStringLiteral("SettingChanged"),
                       .firstArgument = area()}},
            .withoutProgram = BusQueryMonitor::WithoutProgram::keepAnswer};
}

}  // namespace

AppearanceMonitor::AppearanceMonitor(const QDBusConnection& bus, OnChoice onChoice)
    : onChoice_(std::move(onChoice)),
      reading_(bus, question(), [this](const QDBusMessage& answer) { answered(answer); }) {}

void AppearanceMonitor::answered(const QDBusMessage& answer) {
    const AppearanceSettings choice = choiceOf(answer);
    if (std::exchange(told_, choice) == choice) return;
    onChoice_(choice);
}

}  // namespace tarnik
