#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <functional>
#include <optional>
#include <stdexcept>
#include <utility>

namespace tarnik {

inline QVariant variant(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}

// A service on the bus whose objects all answer alike. Belongs to the thread that makes it.
class FakeService : public QDBusVirtualObject {
public:
    // std::nullopt sends no reply.
    using Answer = std::function<std::optional<QDBusMessage>(const QDBusMessage& call)>;

    FakeService(QDBusConnection bus, QString name, Answer answer)
        : bus_(std::move(bus)), name_(std::move(name)), answer_(std::move(answer)) {
        bus_.registerVirtualObject("/", this, QDBusConnection::SubPath);
        if (!bus_.registerService(name_)) throw std::runtime_error("the name is taken");
    }
    ~FakeService() override { bus_.unregisterService(name_); }

    void signal(const QString& path, const QString& interface, const QString& name,
                const QVariantList& arguments = {}) {
        auto message = QDBusMessage::createSignal(path, interface, name);
        message.setArguments(arguments);
        bus_.send(message);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        const auto answer = answer_(call);
        if (answer) bus.send(*answer);
        return true;
    }

private:
    QDBusConnection bus_;
    const QString name_;
    const Answer answer_;
};

}  // namespace tarnik
