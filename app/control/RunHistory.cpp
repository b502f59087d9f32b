#include "app/control/RunHistory.h"

#include <chrono>

#include "app/journal/Explanation.h"

namespace tarnik {
namespace {

void started(ChildHistory& child, const JournalEvent& event) {
    child.pid = event.number(EventField::pid);
    child.since = event.time;
    child.nextTry.reset();
}

void stopped(ChildHistory& child) {
    child.pid.reset();
    child.since.reset();
    child.nextTry.reset();
}

void ended(ChildHistory& child, const JournalEvent& event) {
    stopped(child);
    child.lastEnd = {.at = event.time, .status = endOf(event), .ranForMs = event.number(EventField::ranFor)};
}

void restart(ChildHistory& child, const JournalEvent& event) {
    constexpr std::int64_t oneDay = 86'400'000;
    stopped(child);
    ++child.restarts;
    const auto delay = event.number(EventField::delay).value_or(0);
    // The bound keeps a damaged file from an overflow.
    if (delay >= 0 && delay <= oneDay) child.nextTry = event.time + std::chrono::milliseconds(delay);
}

}  // namespace

void RunHistory::apply(const JournalEvent& event) {
    switch (event.code) {
        case EventCode::programStarted:
            *this = {};
            since = event.time;
            break;
        case EventCode::helperStarted: started(helper, event); break;
        case EventCode::helperEnded: ended(helper, event); break;
        case EventCode::helperRestart: restart(helper, event); break;
        case EventCode::helperStartFailed:
        case EventCode::helperStopped:
        case EventCode::helperWaiting:
        case EventCode::helperMissing: stopped(helper); break;
        // The connect command has become the helper. Its process id isn't recorded.
        case EventCode::pairingConnected: helper.since = event.time; break;
        case EventCode::driverStarted: started(driver, event); break;
        case EventCode::driverEnded: ended(driver, event); break;
        case EventCode::driverRestart: restart(driver, event); break;
        case EventCode::driverStartFailed:
        case EventCode::driverStopped:
        case EventCode::driverGivenUp: stopped(driver); break;
        case EventCode::updateWaiting: waitingUpdate = event.text(EventField::version).value_or(""); break;
        case EventCode::updateInstalled: waitingUpdate.reset(); break;
        case EventCode::programEnded:
            stopped(helper);
            stopped(driver);
            break;
        case EventCode::programSecondStart:
        case EventCode::programAnotherCopy:
        case EventCode::programRelocation:
        case EventCode::programWarning:
        case EventCode::homeUnusable:
        case EventCode::installBegun:
        case EventCode::installStep:
        case EventCode::installRefused:
        case EventCode::installDone:
        case EventCode::endpointPublished:
        case EventCode::endpointWithdrawn:
        case EventCode::pairingOffered:
        case EventCode::pairingBegun:
        case EventCode::pairingRefused:
        case EventCode::pairingPrompted:
        case EventCode::pairingConfirmed:
        case EventCode::pairingEnded:
        case EventCode::pairingCancelled:
        case EventCode::switchesChanged: break;
    }
}

RunHistory RunHistory::of(std::span<const JournalEvent> events) {
    RunHistory history;
    for (const auto& event : events) history.apply(event);
    return history;
}

}  // namespace tarnik
