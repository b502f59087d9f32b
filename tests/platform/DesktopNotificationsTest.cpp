#include "app/platform/linux/DesktopNotifications.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/FakeService.h"
#include "tests/platform/PrivateBus.h"

namespace tarnik {
namespace {

const QString service = "org.freedesktop.Notifications";
const QString path = "/org/freedesktop/Notifications";

// The notification service of a desktop. Gives the numbers 7, 8, ...
struct Desktop {
    PrivateBus bus;
    QStringList capabilities{"actions", "body-markup"};
    std::vector<QVariantList> notices;
    std::vector<uint> closed;
    uint next = 7;
    std::optional<FakeService> server;
    int clicks = 0;
    DesktopNotifications notifications{bus.connect()};

    Desktop() {
        notifications.onClick([this] { ++clicks; });
        start();
    }
    void start() {
        server.emplace(bus.connect(), service, [this](const QDBusMessage& call) { return answer(call); });
    }
    std::optional<QDBusMessage> answer(const QDBusMessage& call) {
        if (call.member() == "GetCapabilities") return call.createReply(capabilities);
        if (call.member() == "CloseNotification") {
            closed.push_back(call.arguments().value(0).toUInt());
            return call.createReply();
        }
        notices.push_back(call.arguments());
        const uint replaced = call.arguments().value(1).toUInt();
        return call.createReply(replaced != 0 ? replaced : next++);
    }
    bool shows(const std::string& id, const UserNotice& notice) {
        const auto before = notices.size();
        notifications.show(id, notice);
        return comesTrue([&] { return notices.size() > before; });
    }
    void click(uint number, const char* action) {
        server->signal(path, service, "ActionInvoked", {number, action});
    }
};

TEST(DesktopNotifications, showsReplacesAndWithdraws) {
    Desktop desktop;
    ASSERT_TRUE(comesTrue([&] { return desktop.notifications.canShow(); }));
    ASSERT_TRUE(desktop.shows("one", {"A title", "1 < 2 & 3"}));
    const auto& first = desktop.notices.front();
    EXPECT_EQ(first.value(1).toUInt(), 0U);
    EXPECT_EQ(first.value(3).toString(), "A title");
    EXPECT_EQ(first.value(4).toString(), "1 &lt; 2 &amp; 3");
    EXPECT_EQ(first.value(5).toStringList(), QStringList({"default", "Open tarnik"}));
    EXPECT_EQ(qdbus_cast<QVariantMap>(first.value(6)).value("urgency").toInt(), 1);
    ASSERT_TRUE(desktop.shows("one", {"Another", ""}));
    EXPECT_EQ(desktop.notices.back().value(1).toUInt(), 7U);
    ASSERT_TRUE(desktop.shows("two", {"Other", ""}));

    const auto other = desktop.bus.connect();
    auto forged = QDBusMessage::createSignal(path, service, "ActionInvoked");
    forged.setArguments({7U, "default"});
    other.send(forged);
    EXPECT_TRUE(other.interface()->isServiceRegistered(service));  // the bus has sent the signal
    desktop.click(9, "default");                                   // of another program
    desktop.click(7, "other");
    desktop.click(7, "default");
    EXPECT_TRUE(comesTrue([&] { return desktop.clicks > 0; }));

    // A notice that the user has closed isn't closed again, because its number may be in use again.
    desktop.server->signal(path, service, "NotificationClosed", {7U, 2U});
    desktop.click(8, "default");
    ASSERT_TRUE(comesTrue([&] { return desktop.clicks > 1; }));
    desktop.notifications.withdraw("one");
    desktop.notifications.withdraw("two");
    EXPECT_TRUE(comesTrue([&] { return !desktop.closed.empty(); }));
    EXPECT_EQ(desktop.closed, std::vector<uint>({8}));
    EXPECT_EQ(desktop.clicks, 2);
}

TEST(DesktopNotifications, closesANoticeThatIsWithdrawnBeforeTheReply) {
    Desktop desktop;
    ASSERT_TRUE(comesTrue([&] { return desktop.notifications.canShow(); }));
    desktop.notifications.show("one", {"A title", ""});
    desktop.notifications.withdraw("one");
    EXPECT_TRUE(comesTrue([&] { return desktop.closed == std::vector<uint>({7}); }));
}

TEST(DesktopNotifications, forgetsTheNumbersOfAnEarlierService) {
    Desktop desktop;
    ASSERT_TRUE(comesTrue([&] { return desktop.notifications.canShow(); }));
    ASSERT_TRUE(desktop.shows("one", {"A title", ""}));
    desktop.server.reset();
    ASSERT_TRUE(comesTrue([&] { return !desktop.notifications.canShow(); }));
    desktop.capabilities.clear();
    desktop.start();
    ASSERT_TRUE(comesTrue([&] { return desktop.notifications.canShow(); }));
    ASSERT_TRUE(desktop.shows("one", {"A title", "1 < 2"}));
    EXPECT_EQ(desktop.notices.back().value(1).toUInt(), 0U);
    EXPECT_EQ(desktop.notices.back().value(4).toString(), "1 < 2");
    EXPECT_EQ(desktop.notices.back().value(5).toStringList(), QStringList());
}

}  // namespace
}  // namespace tarnik
