#include "app/platform/linux/ColourSchemeReading.h"

#include <utility>

#include "app/platform/linux/BusCall.h"
#include "app/platform/linux/DesktopPortal.h"

namespace tarnik {
namespace {

ColourScheme schemeOf(uint number) {
    if (number == 1) return ColourScheme::dark;
    return number == 2 ? ColourScheme::light : ColourScheme::unknown;
}

BusReading::Question question() {
    const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
    const QString area = QStringLiteral("org.freedesktop.appearance");
    return {.call = busCall(desktopPortal(), settings, QStringLiteral("Read"),
                            {area, QStringLiteral("color-scheme")}),
            .hints = {{.path = desktopPortal().path,
                       .interface = settings,
                       .name = QStringLiteral("SettingChanged"),
                       .firstArgument = area}},
            .withoutProgram = BusReading::WithoutProgram::keepAnswer};
}

}  // namespace

ColourSchemeReading::ColourSchemeReading(const QDBusConnection& bus, OnScheme onScheme)
    : onScheme_(std::move(onScheme)),
      reading_(bus, question(), [this](const QDBusMessage& answer) { answered(answer); }) {}

void ColourSchemeReading::answered(const QDBusMessage& answer) {
    const ColourScheme scheme = schemeOf(busValue(answer).toUInt());
    if (std::exchange(told_, scheme) == scheme) return;
    onScheme_(scheme);
}

}  // namespace tarnik
