#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "app/platform/linux/BusSignal.h"

namespace tarnik {

// The answer to one question on the bus, kept up to date: asked at the start and whenever a signal says that
// the answer may be another, or the program that answers comes or goes. In between nothing is sent.
//
// Main thread. However many signals come, there is one question under way.
class BusQueryMonitor {
public:
    // What becomes of the answer when the program behind the name has ended.
    enum class WithoutProgram { ask, keepAnswer };

    struct Question {
        QDBusMessage call;  // to a well-known name; only the first one may start the program behind it
        std::vector<BusSignal::Match> hints = {};
        WithoutProgram withoutProgram = WithoutProgram::ask;
    };
    // An error too. Not called at once; may be called with the same answer again.
    using OnAnswer = std::function<void(const QDBusMessage& answer)>;

    BusQueryMonitor(const QDBusConnection& bus, Question question, OnAnswer onAnswer);

    bool hasAnswer() const { return hasAnswer_; }

    // What was done might have changed the answer.
    void ask();

private:
    void listen(const BusSignal::Match& match, BusSignal::Handler handler);
    void ownerChanged(const QDBusMessage& signal);
    void answered(const QDBusMessage& answer);

    const QDBusConnection bus_;
    Question question_;
    const OnAnswer onAnswer_;
    bool isAsking_ = false;
    bool hasAnswer_ = false;
    bool mustAskAgain_ = false;
    QObject context_;
    std::vector<std::unique_ptr<BusSignal>> signals_;
};

}  // namespace tarnik
