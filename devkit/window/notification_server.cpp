// A notification service. Accepts notices over the session bus, as a desktop does, and prints JSON lines
// about them.
//
// Prints "ready" when it runs, "notice" for each notice with its number and texts, and "closed" for each
// number that the program withdraws. The command "click NUMBER" on standard input clicks on that notice.
// Exits at the end of standard input.
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QJsonObject>
#include <string>

#include "devkit/window/BusServer.h"
#include "devkit/window/LineProtocol.h"

namespace {

const QString serviceName = "org.freedesktop.Notifications";
const QString objectPath = "/org/freedesktop/Notifications";

class NotificationServer : public QDBusVirtualObject {
public:
    bool start() { return bus_.registerVirtualObject(objectPath, this) && bus_.registerService(serviceName); }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == "GetCapabilities")
            return connection.send(message.createReply(QStringList({"actions", "body", "body-markup"})));
        if (message.member() == "Notify")
            return connection.send(message.createReply(add(message.arguments())));
        if (message.member() != "CloseNotification") return false;
        const auto number = message.arguments().value(0).toUInt();
        devkit::say({{"closed", static_cast<qint64>(number)}});
        return connection.send(message.createReply());
    }

    void obey(const std::string& line) {
        if (!line.starts_with("click ")) return;
        auto signal = QDBusMessage::createSignal(objectPath, serviceName, "ActionInvoked");
        signal.setArguments({static_cast<uint>(std::stoul(line.substr(6))), QString("default")});
        bus_.send(signal);
    }

private:
    uint add(const QVariantList& arguments) {
        const uint replaced = arguments.value(1).toUInt();
        const uint number = replaced != 0 ? replaced : ++last_;
        devkit::say({{"notice", static_cast<qint64>(number)},
                     {"replaced", replaced != 0},
                     {"title", arguments.value(3).toString()},
                     {"body", arguments.value(4).toString()}});
        return number;
    }

    QDBusConnection bus_ = QDBusConnection::sessionBus();
    uint last_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    return devkit::runBusServer<NotificationServer>(argc, argv, "the notification service");
}
