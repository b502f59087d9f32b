#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <QTimer>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "core/foundation/Time.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

// Runs the event loop until `condition` holds. Returns false if it doesn't hold within `limit`.
template <class Condition>
bool comesTrue(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    QTimer wake;
    wake.setSingleShot(true);
    wake.start(limit);
    while (!condition() && wake.isActive()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}

// A message bus for one test. It starts no services.
class PrivateBus {
public:
    PrivateBus() {
        QFile file(QString::fromStdString(folder_.path() + "/bus.conf"));
        if (!file.open(QIODevice::WriteOnly)) throw std::runtime_error("no file for the bus");
        file.write(
            "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><policy context='default'>"
            "<allow send_destination='*'/><allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
        file.close();
        daemon_.start("dbus-daemon", {"--nofork", "--print-address", "--config-file=" + file.fileName()});
        if (!daemon_.waitForReadyRead()) throw std::runtime_error("no dbus-daemon");
        address_ = QString::fromLatin1(daemon_.readLine()).trimmed();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        daemon_.kill();
        daemon_.waitForFinished();
    }

    // Returns a new connection each time, like that of another program.
    QDBusConnection connect() const {
        static int count = 0;
        return QDBusConnection::connectToBus(address_, QStringLiteral("test%1").arg(++count));
    }

private:
    const TemporaryFolder folder_;
    QProcess daemon_;
    QString address_;
};

// A thread with its own connection and event loop. On the bus it looks like another program.
class BusProgram {
public:
    explicit BusProgram(const PrivateBus& bus) : bus_(bus.connect()) {
        thread_.start();
        context_->moveToThread(&thread_);
    }
    BusProgram(const BusProgram&) = delete;
    BusProgram& operator=(const BusProgram&) = delete;
    ~BusProgram() { end(); }

    const QDBusConnection& bus() const { return bus_; }
    // The connection closes with its last copy.
    void leaveBus() {
        QDBusConnection::disconnectFromBus(bus_.name());
        bus_ = QDBusConnection(QString());
    }
    // Blocks until the task has run. Does nothing after end().
    void run(const std::function<void()>& task) const {
        if (!thread_.isRunning()) return;
        QMetaObject::invokeMethod(context_.get(), task, Qt::BlockingQueuedConnection);
    }

    // Disconnects and ends. No object may use the connection any more.
    void end() {
        leaveBus();
        thread_.quit();
        thread_.wait();
    }

private:
    QDBusConnection bus_;
    QThread thread_;
    const std::unique_ptr<QObject> context_ = std::make_unique<QObject>();
};

}  // namespace tarnik
