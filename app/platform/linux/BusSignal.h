#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <functional>

namespace tarnik {

// Passes on a signal from the bus for as long as it lives. Main thread.
class BusSignal : public QObject {
    Q_OBJECT

public:
    struct Match {
        QString path;
        QString interface;
        QString name;
        QString firstArgument = {};  // any, when empty
        // Whose it has to be. Anybody's, when empty: what matters is asked for afterwards.
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
