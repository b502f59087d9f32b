#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "app/platform/linux/BusSignal.h"

namespace tarnik {

// Keeps the reply to one D-Bus call up to date. Sends the call at the start, when one of the query's signals
// arrives, when the service starts or ends, and when the bus is lost. Doesn't poll.
//
// Main thread only. At most one call is pending. Signals that arrive meanwhile cause one more call.
class BusQueryMonitor {
public:
    // The reaction to the end of the service: send the call again, or keep the last reply.
    enum class OnServiceEnd { query, keepReply };

    struct Query {
        QDBusMessage call;  // to a well-known name; only the first call can start the service
        std::vector<BusSignal::Match> signals = {};
        OnServiceEnd onServiceEnd = OnServiceEnd::query;
    };
    // Receives replies and errors. Not called by the constructor. May repeat the previous reply.
    using OnReply = std::function<void(const QDBusMessage& reply)>;

    BusQueryMonitor(const QDBusConnection& bus, Query query, OnReply onReply);

    bool hasReply() const { return hasReply_; }

    // Sends the call again. Call it after an operation that may have changed the value.
    void refresh();

private:
    void subscribe(const BusSignal::Match& match, BusSignal::Handler handler);
    void ownerChanged(const QDBusMessage& signal);
    void replied(const QDBusMessage& reply);

    const QDBusConnection bus_;
    Query query_;
    const OnReply onReply_;
    bool isPending_ = false;
    bool hasReply_ = false;
    bool mustRefresh_ = false;
    QObject context_;
    std::vector<std::unique_ptr<BusSignal>> signals_;
};

}  // namespace tarnik
