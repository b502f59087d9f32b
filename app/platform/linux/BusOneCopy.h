#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <memory>
#include <optional>
#include <string>

#include "app/platform/OneCopy.h"
#include "app/platform/linux/ApplicationObject.h"
#include "app/platform/linux/OpenRequests.h"
#include "core/foundation/Time.h"

namespace tarnik {

// One copy for each session bus: the one that has our name there.
//
// Main thread. A copy can be spoken to as soon as it has the name, but answers only when its loop runs.
//
//   the copy that has the name     what settle does
//   answers                        handedOver
//   says that it is ending         waits for its end, then tries to take the name again
//   ends without an answer         tries to take the name again: it has not taken the link
//   gives no answer in time        handedOver: the link waits in its queue, and must not be used twice
//   doesn't know the interface     alone
class BusOneCopy {
public:
    struct Bounds {
        Seconds handOver = std::chrono::seconds(30);  // it may be starting just now
        Seconds end = std::chrono::seconds(45);       // what stopping everything takes, and some more
    };

    // `activationToken`: of the click on the desktop that has started this copy.
    BusOneCopy(const QDBusConnection& bus, std::shared_ptr<OpenRequests> requests,
               std::optional<std::string> activationToken, Bounds bounds);

    OneCopy::Standing settle(const OneCopy::Start& start);
    void refuseMore() { object_.refuseMore(); }

private:
    enum class Claim { ours, taken, impossible };
    enum class Reply { taken, ending, gone, silent, refused };

    OneCopy::Standing goOn(OneCopy::Standing standing, const std::optional<std::string>& link);
    Claim claimName() const;
    std::optional<QString> otherCopy() const;
    Reply handOver(const QString& copy, const OneCopy::Start& start) const;
    QDBusMessage messageTo(const QString& copy, const OneCopy::Start& start) const;
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
