// A tray. Accepts status items over the session bus, as the panel of a desktop does, and prints JSON lines
// about them.
//
// Prints "ready" when it runs, and "registered" and "gone" for each item. Commands on standard input: "show"
// prints the properties and the menu of the last item, "picture" prints its picture of 16 pixels as rows of
// "#" and ".", "choose ID" activates an entry of that menu, and "click" clicks on that item. Exits at the end
// of standard input.
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QJsonArray>
#include <QJsonObject>
#include <ctime>
#include <string>

#include "devkit/window/BusServer.h"
#include "devkit/window/LineProtocol.h"

namespace {

constexpr int callLimitMs = 2000;
constexpr int pictureSide = 16;
constexpr qsizetype pixelBytes = 4;
constexpr qsizetype rowBytes = pixelBytes * pictureSide;
constexpr qsizetype pictureBytes = rowBytes * pictureSide;
const QString watcherName = "org.kde.StatusNotifierWatcher";
const QString itemInterface = "org.kde.StatusNotifierItem";
const QString menuInterface = "com.canonical.dbusmenu";
const QString propertiesInterface = "org.freedesktop.DBus.Properties";

// The introspection data. Programs request it first.
const QString introduction = R"(
  <interface name="org.kde.StatusNotifierWatcher">
    <method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
    <method name="RegisterStatusNotifierHost"><arg name="service" type="s" direction="in"/></method>
    <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
    <signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
    <signal name="StatusNotifierHostRegistered"/>
  </interface>
)";

class TrayHost : public QDBusVirtualObject {
public:
    TrayHost() {
        gone_.setConnection(bus_);
        gone_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        connect(&gone_, &QDBusServiceWatcher::serviceUnregistered, [this](const QString& service) {
            items_.removeAll(service);
            devkit::say({{"gone", service}});
        });
    }

    bool start() {
        return bus_.registerVirtualObject("/StatusNotifierWatcher", this) &&
               bus_.registerService(watcherName);
    }

    QString introspect(const QString&) const override { return introduction; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() == propertiesInterface && message.member() == "Get") {
            const auto value = properties().value(message.arguments().value(1).toString());
            return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
        }
        if (message.interface() == propertiesInterface && message.member() == "GetAll")
            return connection.send(message.createReply(QVariant(properties())));
        if (message.member() == "RegisterStatusNotifierItem") {
            connection.send(message.createReply());
            add(message.arguments().value(0).toString(), message.service());
            return true;
        }
        return false;
    }

    void obey(const std::string& line) {
        if (line == "show") return show();
        if (line == "picture") return showPicture();
        if (line == "click") {
            call(item(), "/StatusNotifierItem", itemInterface, "Activate", {0, 0});
        } else if (line.starts_with("choose ")) {
            call(item(), menuPath(), menuInterface, "Event",
                 {std::stoi(line.substr(7)), QString("clicked"), QVariant::fromValue(QDBusVariant(QString())),
                  static_cast<uint>(std::time(nullptr))});
        }
    }

private:
    QVariantMap properties() const {
        return {{"RegisteredStatusNotifierItems", items_},
                {"IsStatusNotifierHostRegistered", true},
                {"ProtocolVersion", 0}};
    }

    // `given` is the name of the item's service, or the path of an object of the sender.
    void add(const QString& given, const QString& sender) {
        const auto service = given.startsWith('/') ? sender : given;
        items_.append(service);
        gone_.addWatchedService(service);
        auto signal =
            QDBusMessage::createSignal("/StatusNotifierWatcher", watcherName, "StatusNotifierItemRegistered");
        signal.setArguments({service});
        bus_.send(signal);
        const QDBusReply<uint> pid = bus_.interface()->servicePid(sender);
        devkit::say({{"registered", service}, {"pid", static_cast<qint64>(pid.value())}});
    }

    QString item() const { return items_.isEmpty() ? QString() : items_.last(); }

    QVariantList call(const QString& service, const QString& path, const QString& interface,
                      const QString& operation, const QVariantList& arguments) const {
        auto message = QDBusMessage::createMethodCall(service, path, interface, operation);
        message.setArguments(arguments);
        const auto answer = bus_.call(message, QDBus::Block, callLimitMs);
        if (answer.type() == QDBusMessage::ErrorMessage) devkit::say({{"error", answer.errorMessage()}});
        return answer.arguments();
    }

    QVariantMap itemProperties() const {
        const auto all = call(item(), "/StatusNotifierItem", propertiesInterface, "GetAll", {itemInterface});
        return all.isEmpty() ? QVariantMap() : qdbus_cast<QVariantMap>(all[0]);
    }

    QString menuPath() const { return qvariant_cast<QDBusObjectPath>(itemProperties()["Menu"]).path(); }

    void show() const {
        const auto all = itemProperties();
        devkit::say({{"item", item()},
                     {"id", all["Id"].toString()},
                     {"title", all["Title"].toString()},
                     {"status", all["Status"].toString()},
                     {"tooltip", tooltip(all["ToolTip"])},
                     {"icons", iconSizes(all["IconPixmap"])},
                     {"iconName", all["IconName"].toString()},
                     {"menu", menu(qvariant_cast<QDBusObjectPath>(all["Menu"]).path())}});
    }

    void showPicture() const {
        const auto argument = qvariant_cast<QDBusArgument>(itemProperties()["IconPixmap"]);
        QJsonArray rows;
        for (argument.beginArray(); !argument.atEnd();) {
            int width = 0, height = 0;
            QByteArray bytes;  // the first of each pixel is the opacity
            argument.beginStructure();
            argument >> width >> height >> bytes;
            argument.endStructure();
            if (width != pictureSide || bytes.size() != pictureBytes) continue;
            for (qsizetype row = 0; row < pictureBytes; row += rowBytes) {
                QString pixels;
                for (qsizetype pixel = row; pixel < row + rowBytes; pixel += pixelBytes)
                    pixels += static_cast<uchar>(bytes[pixel]) > 127 ? '#' : '.';
                rows.append(pixels);
            }
        }
        argument.endArray();
        devkit::say({{"picture", rows}});
    }

    static QString tooltip(const QVariant& value) {
        const auto argument = qvariant_cast<QDBusArgument>(value);
        QString icon, title;
        argument.beginStructure();
        argument >> icon;
        skipPixmaps(argument);
        argument >> title;
        return title;
    }

    static QJsonArray skipPixmaps(const QDBusArgument& argument) {
        QJsonArray widths;
        for (argument.beginArray(); !argument.atEnd();) {
            int width = 0, height = 0;
            QByteArray bytes;
            argument.beginStructure();
            argument >> width >> height >> bytes;
            argument.endStructure();
            widths.append(width);
        }
        argument.endArray();
        return widths;
    }

    static QJsonArray iconSizes(const QVariant& value) {
        return skipPixmaps(qvariant_cast<QDBusArgument>(value));
    }

    QJsonArray menu(const QString& path) const {
        call(item(), path, menuInterface, "AboutToShow", {0});
        const auto layout = call(item(), path, menuInterface, "GetLayout", {0, -1, QStringList()});
        QJsonArray entries;
        if (layout.size() < 2) return entries;
        const auto root = qvariant_cast<QDBusArgument>(layout[1]);
        int id = 0;
        QVariantMap properties;
        root.beginStructure();
        root >> id >> properties;
        for (root.beginArray(); !root.atEnd();) {
            QDBusVariant child;
            root >> child;
            entries.append(entry(qvariant_cast<QDBusArgument>(child.variant())));
        }
        return entries;
    }

    static QJsonObject entry(const QDBusArgument& argument) {
        int id = 0;
        QVariantMap properties;
        argument.beginStructure();
        argument >> id >> properties;
        return {{"id", id},
                {"label", properties["label"].toString()},
                {"type", properties.value("type", "standard").toString()},
                {"enabled", properties.value("enabled", true).toBool()},
                {"visible", properties.value("visible", true).toBool()}};
    }

    QDBusConnection bus_ = QDBusConnection::sessionBus();
    QDBusServiceWatcher gone_;
    QStringList items_;
};

}  // namespace

int main(int argc, char** argv) {
    return devkit::runBusServer<TrayHost>(argc, argv, "the tray");
}
