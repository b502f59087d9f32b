#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <memory>
#include <optional>
#include <string>

#include "app/platform/SingleInstance.h"
#include "app/platform/linux/ApplicationObject.h"
#include "app/platform/linux/OpenRequests.h"
#include "core/foundation/Time.h"

namespace tarnik {

// One copy for each session bus: the one that has our name there.
//
// Main thread. A copy can be spoken to as soon as it has the name, but answers only when its loop runs.
//
//   the copy that has the name     what acquire does
//   answers                        handedOver
//   says that it is ending         waits for its end, then tries to take the name again
//   ends without an answer         tries to take the name again: it has not taken the link
//   gives no answer in time        handedOver: the link waits in its queue, and must not be used twice
//   doesn't know the interface     alone
class BusSingleInstance {
public:
    struct Bounds {
        Seconds handOver = std::chrono::seconds(30);  // it may be starting just now
        Seconds end = std::chrono::seconds(45);       // what stopping everything takes, and some more
    };

    // `activationToken`: of the click on the desktop that has started this copy.
    BusSingleInstance(const QDBusConnection& bus, std::shared_ptr<OpenRequests> requests,
                      std::optional<std::string> activationToken, Bounds bounds);

    SingleInstance::Outcome acquire(const SingleInstance::LaunchRequest& request);
    void refuseRequests() { object_.refuseRequests(); }

private:
    enum class Claim { ours, taken, impossible };
    enum class Reply { taken, ending, gone, silent, refused };

    SingleInstance::Outcome goOn(SingleInstance::Outcome outcome, const std::optional<std::string>& link);
    Claim claimName() const;
    std::optional<QString> otherCopy() const;
    Reply handOver(const QString& copy, const SingleInstance::LaunchRequest& request) const;
    QDBusMessage messageTo(const QString& copy, const SingleInstance::LaunchRequest& request) const;
    bool waitForEnd(const QString& copy) const;
    bool isThere(const QString& copy) const;
    QDBusMessage call(const QDBusMessage& message, Seconds bound) const;
    QDBusMessage callBus(const char* operation, const QVariantList& arguments) const;

    const QDBusConnection bus_;
    const std::shared_ptr<OpenRequests> requests_;
    const std::optional<std::string> activationToken_;
    const Bounds bounds_;
    ApplicationObject object_;
};

}  // namespace tarnik
