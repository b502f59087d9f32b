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

// Allows one instance per session bus: the owner of our bus name. A later instance passes its request to the
// owner. Main thread only.
//
//   reaction of the owner            result of acquire
//   replies                          handedOver
//   reports that it is ending        waits for its end, then claims the name again; unavailable if it stays
//   exits without a reply            claims the name again, because the request was not accepted
//   doesn't reply within the time    handedOver, because the owner may use the link later
//   replies with another error       unavailable
//
// Without a bus, and after too many claims, the result is unavailable.
class BusSingleInstance {
public:
    struct Timeouts {
        Seconds handOver = std::chrono::seconds(30);  // for the reply; the owner may still be starting
        Seconds end = std::chrono::seconds(45);       // for the end of an owner; longer than a shutdown
    };

    // `activationToken` is the token that the desktop gave this instance.
    BusSingleInstance(const QDBusConnection& bus, std::shared_ptr<OpenRequests> requests,
                      std::optional<std::string> activationToken, Timeouts timeouts);

    SingleInstance::Outcome acquire(const SingleInstance::LaunchRequest& request);
    void refuseRequests() { object_.refuseRequests(); }

private:
    enum class Claim { owned, taken, impossible };
    enum class Reply { accepted, ending, gone, silent, refused };

    SingleInstance::Outcome proceed(SingleInstance::Outcome outcome, const std::optional<std::string>& link);
    Claim claimName() const;
    std::optional<QString> owner() const;
    Reply handOver(const QString& owner, const SingleInstance::LaunchRequest& request) const;
    QDBusMessage requestCall(const QString& owner, const SingleInstance::LaunchRequest& request) const;
    bool waitForEnd(const QString& owner) const;
    bool isConnected(const QString& owner) const;
    QDBusMessage call(const QDBusMessage& message, Seconds timeout) const;
    QDBusMessage callBus(const char* operation, const QVariantList& arguments) const;

    const QDBusConnection bus_;
    const std::shared_ptr<OpenRequests> requests_;
    const std::optional<std::string> activationToken_;
    const Timeouts timeouts_;
    ApplicationObject object_;
};

}  // namespace tarnik
