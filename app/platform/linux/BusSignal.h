#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <functional>

namespace tarnik {

// A subscription to a D-Bus signal. The subscription ends when this object is destroyed. Main thread only.
class BusSignal : public QObject {
    Q_OBJECT

public:
    struct Match {
        QString path;
        QString interface;
        QString name;
        QString firstArgument = {};  // empty matches every argument
        // The sender. Empty matches every sender. That is safe if the handler only queries the value again.
        QString service = {};
    };
    using Handler = std::function<void(const QDBusMessage&)>;

    BusSignal(QDBusConnection bus, const Match& match, Handler handler);

private Q_SLOTS:
    void receive(const QDBusMessage& message) { handler_(message); }

private:
    const Handler handler_;
};

}  // namespace tarnik
