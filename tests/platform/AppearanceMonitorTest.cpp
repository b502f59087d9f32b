#include "app/platform/linux/AppearanceMonitor.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/FakeService.h"
#include "tests/platform/PrivateBus.h"

namespace tarnik {
namespace {

using Settings = QMap<QString, QVariantMap>;

QVariant colour(double red, double green, double blue) {
    QDBusArgument argument;
    argument.beginStructure();
    argument << red << green << blue;
    argument.endStructure();
    return QVariant::fromValue(argument);
}

TEST(AppearanceMonitor, reportsEachChange) {
    qDBusRegisterMetaType<Settings>();
    const PrivateBus bus;
    std::vector<AppearanceSettings> reported;
    const AppearanceMonitor monitor(bus.connect(), [&](const auto& seen) { reported.push_back(seen); });
    EXPECT_TRUE(comesTrue([&] { return reported == std::vector{AppearanceSettings()}; }));

    QVariantMap chosen{{"color-scheme", 1U}};
    FakeService portal(bus.connect(), "org.freedesktop.portal.Desktop", [&](const QDBusMessage& call) {
        const Settings settings{{call.arguments().at(0).toStringList().value(0), chosen}};
        return call.createReply(QVariant::fromValue(settings));
    });
    const AccentColour orange{.red = 1, .green = 0.5, .blue = 0};
    const std::pair<QVariantMap, AppearanceSettings> cases[] = {
        {chosen, {.scheme = ColourScheme::dark}},
        {{{"color-scheme", 2U}, {"accent-color", colour(1, 0.5, 0)}, {"contrast", 1U}},
         {.scheme = ColourScheme::light, .options = {.accent = orange, .contrast = Contrast::higher}}},
        {{{"accent-color", colour(-1, 0, 0)}, {"contrast", 0U}}, {}},
        {{{"accent-color", colour(1, 0.5, 0)}}, {.options = {.accent = orange}}},
        {{{"accent-color", "orange"}, {"color-scheme", 7U}}, {}},
    };
    std::vector<AppearanceSettings> expected = reported;
    for (const auto& [changed, settings] : cases) {
        chosen = changed;
        expected.push_back(settings);
        for (int i = 0; i < 10; ++i)
            portal.signal("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                          "SettingChanged", {"org.freedesktop.appearance", "contrast", variant(0)});
        EXPECT_TRUE(comesTrue([&] { return reported == expected; })) << expected.size();
    }
}

}  // namespace
}  // namespace tarnik
