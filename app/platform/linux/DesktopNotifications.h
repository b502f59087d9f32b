#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/platform/UserNotices.h"
#include "app/platform/linux/BusQueryMonitor.h"
#include "app/platform/linux/BusSignal.h"

namespace tarnik {

// Shows notices with the notification service of the desktop. Starts the service for the first notice if the
// bus can start it.
//
// Main thread only. No operation waits. At most one call for each notice is pending; of several changes that
// arrive meanwhile only the latest is sent. If the service ends, its notices are forgotten.
class DesktopNotifications {
public:
    explicit DesktopNotifications(const QDBusConnection& bus);

    // Returns true if the service runs or can be started.
    bool canShow() const { return capabilities_ || isActivatable_; }

    // See UserNotices.
    void show(const std::string& id, const UserNotice& notice);
    void withdraw(const std::string& id);
    void onClick(std::function<void()> handler) { onClick_ = std::move(handler); }

private:
    // A notice of this program.
    struct Entry {
        std::optional<UserNotice> wanted;  // not sent yet
        uint number = 0;                   // the number that the service gave it; 0 if it isn't shown
        bool isPending = false;            // the service has not replied yet
        bool isWithdrawn = true;
    };

    void serviceReplied(const QDBusMessage& reply);
    void startService();
    void send(Entry& entry);
    void sent(Entry& entry, const QDBusMessage& reply);
    void close(Entry& entry);
    void subscribe();
    Entry* shownEntry(const QDBusMessage& signal);

    const QDBusConnection bus_;
    std::function<void()> onClick_;
    std::map<std::string, Entry> entries_;
    std::optional<QStringList> capabilities_;  // std::nullopt while the service doesn't run
    QString owner_;                            // the unique name of the running service
    bool isActivatable_ = false;
    std::vector<std::unique_ptr<BusSignal>> signals_;  // empty before the first notice
    QObject context_;
    BusQueryMonitor monitor_;
};

}  // namespace tarnik
