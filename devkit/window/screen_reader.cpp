// Reads a program's window over the accessibility bus, as a screen reader does.
//
// For each line "read PID" on standard input, prints one JSON line with the accessibility tree of that
// process, or with null if the process is not on the bus. After each answer, prints {"changed":true} once, at
// the first change that any program announces. Exits at the end of standard input.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QJsonArray>
#include <QJsonObject>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

#include "devkit/window/LineProtocol.h"

namespace {

constexpr int callLimitMs = 2000;
constexpr int mostDepth = 24;
const QString accessible = "org.a11y.atspi.Accessible";

struct Place {
    QString service;
    QString path;
};

// The states that the scripts check, by their numbers on the bus.
constexpr std::pair<unsigned, const char*> states[] = {
    {1, "active"},     {4, "checked"},  {7, "editable"}, {8, "enabled"},
    {11, "focusable"}, {12, "focused"}, {25, "showing"}, {30, "visible"},
};
constexpr unsigned showing = 25;

bool has(const QList<unsigned>& words, unsigned state) {
    const auto word = static_cast<qsizetype>(state / 32);
    return word < words.size() && (words[word] >> (state % 32) & 1U) != 0;
}

class ScreenReader {
public:
    explicit ScreenReader(QDBusConnection bus) : bus_(std::move(bus)) {
        // Programs announce only the events that are registered here.
        for (const char* events : {"object:", "window:"}) {
            call({"org.a11y.atspi.Registry", "/org/a11y/atspi/registry"}, "org.a11y.atspi.Registry",
                 "RegisterEvent", {QString(events)});
        }
        announced_.setSingleShot(true);
        for (const char* kind : {"Object", "Window"}) {
            bus_.connect({}, {}, QString("org.a11y.atspi.Event.") + kind, {}, &announced_, SLOT(start()));
        }
        QObject::connect(&announced_, &QTimer::timeout, [this] { changed(); });
    }

    void read(unsigned pid) {
        const auto program = programOf(pid);
        reportedChange_ = false;
        devkit::say(
            {{"pid", static_cast<qint64>(pid)}, {"tree", program ? describe(*program, 0) : QJsonValue()}});
    }

private:
    void changed() {
        if (std::exchange(reportedChange_, true)) return;
        devkit::say({{"changed", true}});
    }

    QVariantList call(const Place& place, const QString& interface, const QString& operation,
                      const QVariantList& arguments = {}) const {
        auto message = QDBusMessage::createMethodCall(place.service, place.path, interface, operation);
        message.setArguments(arguments);
        return bus_.call(message, QDBus::Block, callLimitMs).arguments();
    }

    QVariant property(const Place& place, const QString& name) const {
        const auto found = call(place, "org.freedesktop.DBus.Properties", "Get", {accessible, name});
        return found.isEmpty() ? QVariant() : qvariant_cast<QDBusVariant>(found[0]).variant();
    }

    std::vector<Place> children(const Place& place) const {
        std::vector<Place> all;
        const auto found = call(place, accessible, "GetChildren");
        if (found.isEmpty()) return all;
        const auto list = qvariant_cast<QDBusArgument>(found[0]);
        for (list.beginArray(); !list.atEnd();) {
            QDBusObjectPath path;
            Place child;
            list.beginStructure();
            list >> child.service >> path;
            list.endStructure();
            child.path = path.path();
            all.push_back(child);
        }
        return all;
    }

    std::optional<Place> programOf(unsigned pid) const {
        for (const auto& program : children({"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"})) {
            const QDBusReply<uint> owner = bus_.interface()->servicePid(program.service);
            if (owner.isValid() && owner.value() == pid) return program;
        }
        return std::nullopt;
    }

    QJsonArray bounds(const Place& place) const {
        const auto found = call(place, "org.a11y.atspi.Component", "GetExtents", {0U});
        if (found.isEmpty()) return {};
        const auto argument = qvariant_cast<QDBusArgument>(found[0]);
        int x = 0, y = 0, width = 0, height = 0;
        argument.beginStructure();
        argument >> x >> y >> width >> height;
        argument.endStructure();
        return {x, y, width, height};
    }

    // Returns an empty object for an element that is not on the screen. The program itself is always
    // described.
    QJsonObject describe(const Place& place, int depth) const {
        const auto role = call(place, accessible, "GetRoleName");
        const auto stateWords = call(place, accessible, "GetState");
        if (role.isEmpty() || stateWords.isEmpty()) return {};  // the element no longer exists
        const auto words = qdbus_cast<QList<unsigned>>(stateWords[0]);
        if (depth > 0 && !has(words, showing)) return {};
        QJsonArray names;
        for (const auto& [number, name] : states)
            if (has(words, number)) names.append(name);
        QJsonArray inside;
        if (depth < mostDepth) {
            for (const auto& child : children(place)) {
                const auto described = describe(child, depth + 1);
                if (!described.isEmpty()) inside.append(described);
            }
        }
        QJsonObject all{{"role", role[0].toString()},
                        {"name", property(place, "Name").toString()},
                        {"description", property(place, "Description").toString()},
                        {"states", names},
                        {"bounds", depth > 0 ? bounds(place) : QJsonArray()},
                        {"children", inside}};
        if (has(words, 7) || role[0].toString() == "text") {
            const auto text = call(place, "org.a11y.atspi.Text", "GetText", {0, -1});
            if (!text.isEmpty()) all["text"] = text[0].toString();
        }
        return all;
    }

    QDBusConnection bus_;
    QTimer announced_;
    bool reportedChange_ = false;
};

// Returns the address of the accessibility bus. A service on the session bus reports it.
QString accessibilityBus() {
    const auto asked =
        QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
    const QDBusReply<QString> answer = QDBusConnection::sessionBus().call(asked, QDBus::Block, callLimitMs);
    return answer.value();
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto bus = QDBusConnection::connectToBus(accessibilityBus(), "accessibility");
    if (!bus.isConnected()) {
        std::cerr << "no accessibility bus: " << bus.lastError().message().toStdString() << '\n';
        return EXIT_FAILURE;
    }
    ScreenReader reader(bus);
    devkit::StandardInput commands;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        const bool open = commands.read([&](const std::string& line) {
            if (line.starts_with("read ")) reader.read(static_cast<unsigned>(std::stoul(line.substr(5))));
        });
        if (!open) QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}
