#include "app/journal/Explanation.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "app/texts/ExplanationTexts.h"
#include "core/node/RestartBackoff.h"
#include "core/process/ExitStatus.h"

namespace tarnik {
namespace {

using Subject = Explanation::Subject;
using Events = std::vector<JournalEvent>;
namespace Texts = ExplanationTexts;

constexpr Seconds recently = std::chrono::hours(1);  // for the outcome of a link

// The differences between the two children.
struct Child {
    Subject subject;
    Texts::Text name;
    EventCode started;
    EventCode startFailed;
    EventCode ended;
    EventCode restart;
};

constexpr Child helper{.subject = Subject::helper,
                       .name = Texts::helper,
                       .started = EventCode::helperStarted,
                       .startFailed = EventCode::helperStartFailed,
                       .ended = EventCode::helperEnded,
                       .restart = EventCode::helperRestart};
constexpr Child driver{.subject = Subject::driver,
                       .name = Texts::driver,
                       .started = EventCode::driverStarted,
                       .startFailed = EventCode::driverStartFailed,
                       .ended = EventCode::driverEnded,
                       .restart = EventCode::driverRestart};

// The failures of a child in a row.
struct Failures {
    std::int64_t count = 0;
    JournalEvent last = {};
};

Seconds ageOf(const JournalEvent& event, WallTime now) {
    return now - event.time;
}

// The bound keeps a damaged file from an overflow.
std::chrono::milliseconds millisecondsOf(const JournalEvent& event, std::string_view field) {
    constexpr std::int64_t oneDay = 86'400'000;
    return std::chrono::milliseconds(std::clamp<std::int64_t>(event.number(field).value_or(0), 0, oneDay));
}

std::string reasonOf(const JournalEvent& event) {
    return event.text(EventField::reason).value_or("");
}

// `also` is one more code.
Events eventsOf(std::span<const JournalEvent> events, std::string_view prefix,
                std::optional<EventCode> also = std::nullopt) {
    Events found;
    std::ranges::copy_if(events, std::back_inserter(found), [&](const auto& event) {
        return nameOf(event.code).starts_with(prefix) || event.code == also;
    });
    return found;
}

std::span<const JournalEvent> latestRun(std::span<const JournalEvent> events) {
    const auto start = std::find_if(events.rbegin(), events.rend(), [](const auto& event) {
        return event.code == EventCode::programStarted;
    });
    if (start == events.rend()) return events;
    return events.subspan(static_cast<std::size_t>(events.rend() - start) - 1);
}

bool hasEnded(std::span<const JournalEvent> run) {
    return !run.empty() && run.back().code == EventCode::programEnded;
}

// A run of healthyAfter ends the row, as it resets the backoff. So does any event that is not part of a
// failure, such as a stop by this program.
Failures failuresOf(const Child& child, const Events& events) {
    Failures failures;
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        if (event->code == child.started || event->code == child.restart ||
            event->code == EventCode::driverGivenUp)
            continue;
        if (event->code != child.ended && event->code != child.startFailed) break;
        if (failures.count++ == 0) failures.last = *event;
        if (millisecondsOf(*event, EventField::ranFor) >= RestartBackoff::healthyAfter) break;
    }
    return failures;
}

std::string failureSentence(const Child& child, const Failures& failures, Seconds age) {
    if (failures.last.code == child.ended)
        return Texts::stopped({child.name, failures.count, age}, endOf(failures.last));
    return Texts::startFailed({child.name, failures.count, age}, reasonOf(failures.last));
}

std::optional<Explanation> explainChild(const Child& child, const Events& events, WallTime now) {
    const auto failures = failuresOf(child, events);
    if (failures.count == 0) return std::nullopt;
    const auto& latest = events.back();
    Explanation result{.subject = child.subject,
                       .sentence = failureSentence(child, failures, ageOf(failures.last, now)),
                       .failures = failures.count};
    if (latest.code == child.restart) {
        const auto delay = millisecondsOf(latest, EventField::delay);
        result.nextTry = latest.time + delay;
        const Seconds left = std::min<Seconds>(*result.nextTry - now, delay);  // the clock may be set back
        result.sentence += " " + (left > Seconds::zero() ? Texts::nextTry(left) : Texts::starting);
    } else if (latest.code == child.started) {
        if (ageOf(latest, now) >= RestartBackoff::healthyAfter) return std::nullopt;
        result.sentence += " " + Texts::runsAgain(ageOf(latest, now));
    } else if (latest.code == EventCode::driverGivenUp) {
        result.sentence += std::string(" ") + Texts::startsWithSwitch;
    }
    return result;
}

// Returns true while a link is checked, offered, or used.
bool isPairing(std::span<const JournalEvent> run) {
    const auto events = eventsOf(run, "pairing.");
    if (events.empty()) return false;
    const auto latest = events.back().code;
    return latest == EventCode::pairingOffered || latest == EventCode::pairingBegun ||
           latest == EventCode::pairingPrompted || latest == EventCode::pairingConfirmed;
}

std::optional<Explanation> explainHelper(std::span<const JournalEvent> run, WallTime now) {
    // The connect command becomes the helper when the pairing has connected.
    const auto events = eventsOf(run, "helper.", EventCode::pairingConnected);
    if (events.empty()) return std::nullopt;
    if (events.back().code == EventCode::helperWaiting) {
        if (isPairing(run)) return std::nullopt;  // it has its link
        return Explanation{Subject::helper, Texts::helperWaiting};
    }
    if (events.back().code == EventCode::helperMissing)
        return Explanation{Subject::helper, Texts::helperMissing};
    return explainChild(helper, events, now);
}

std::optional<Explanation> explainDriver(std::span<const JournalEvent> run, WallTime now) {
    return explainChild(driver, eventsOf(run, "driver."), now);
}

std::optional<Explanation> explainInstall(std::span<const JournalEvent> run, WallTime now) {
    const auto events = eventsOf(run, "install.");
    if (events.empty() || events.back().code == EventCode::installDone) return std::nullopt;
    const auto& latest = events.back();
    if (latest.code == EventCode::installRefused) {
        const auto failed = Texts::ago(Texts::installFailed, ageOf(latest, now), reasonOf(latest));
        return Explanation{Subject::install,
                           failed + " " + (hasEnded(run) ? Texts::startAgain : Texts::tryAgain)};
    }
    const std::string step = latest.code == EventCode::installStep ? latest.sentence : "";
    return Explanation{Subject::install, Texts::ongoing(Texts::installing, ageOf(events.front(), now), step)};
}

std::string pairingSentence(const JournalEvent& event, Seconds age) {
    if (event.code == EventCode::pairingOffered) return Texts::offerWaits;
    if (event.code == EventCode::pairingBegun) return Texts::ongoing(Texts::linkChecked, age);
    if (event.code == EventCode::pairingPrompted) return Texts::ongoing(Texts::promptWaits, age);
    if (event.code == EventCode::pairingConfirmed) return Texts::ongoing(Texts::connecting, age);
    if (age >= recently) return "";
    if (event.code == EventCode::pairingRefused) return Texts::ago(Texts::linkRefused, age, reasonOf(event));
    return event.code == EventCode::pairingEnded ? Texts::pairingEnded(endOf(event), age) : "";
}

std::optional<Explanation> explainPairing(std::span<const JournalEvent> run, WallTime now) {
    const auto events = eventsOf(run, "pairing.");
    if (events.empty()) return std::nullopt;
    const auto sentence = pairingSentence(events.back(), ageOf(events.back(), now));
    if (sentence.empty()) return std::nullopt;
    return Explanation{Subject::pairing, sentence};
}

std::optional<Explanation> explainUpdate(std::span<const JournalEvent> run) {
    const auto events = eventsOf(run, "update.");
    if (events.empty() || events.back().code != EventCode::updateWaiting) return std::nullopt;
    return Explanation{Subject::update,
                       Texts::updateWaiting(events.back().text(EventField::version).value_or(""))};
}

// Explains why this program does nothing: it has ended, or it has no node home of its own.
std::optional<Explanation> explainProgram(std::span<const JournalEvent> run, WallTime now) {
    for (auto event = run.rbegin(); event != run.rend(); ++event) {
        if (event->code == EventCode::programAnotherCopy || event->code == EventCode::homeUnusable)
            return Explanation{Subject::program, event->sentence};
    }
    if (!hasEnded(run)) return std::nullopt;
    return Explanation{Subject::program, Texts::ago(Texts::ended, ageOf(run.back(), now))};
}

}  // namespace

std::vector<Explanation> explain(std::span<const JournalEvent> events, WallTime now) {
    const auto run = latestRun(events);
    std::vector<Explanation> found;
    const auto add = [&](std::optional<Explanation> explanation) {
        if (explanation) found.push_back(*std::move(explanation));
    };
    add(explainProgram(run, now));
    add(explainInstall(run, now));
    if (hasEnded(run)) return found;  // its children have ended with it
    add(explainHelper(run, now));
    add(explainDriver(run, now));
    add(explainPairing(run, now));
    add(explainUpdate(run));
    return found;
}

std::optional<HelperTrouble> helperTrouble(std::span<const JournalEvent> events) {
    constexpr std::int64_t several = 2;
    const auto ofHelper = eventsOf(latestRun(events), "helper.", EventCode::pairingConnected);
    const auto failures = failuresOf(helper, ofHelper);
    if (failures.count < several) return std::nullopt;
    const auto& latest = ofHelper.back();
    const bool hasRun = failures.last.code == helper.ended;
    HelperTrouble trouble{.kind = hasRun ? HelperTrouble::Kind::stopped : HelperTrouble::Kind::notStarted,
                          .times = failures.count,
                          .last = hasRun ? endOf(failures.last) : reasonOf(failures.last),
                          .at = failures.last.time,
                          .isRunning = latest.code == helper.started};
    if (latest.code == helper.restart)
        trouble.nextTry = latest.time + millisecondsOf(latest, EventField::delay);
    return trouble;
}

std::string endOf(const JournalEvent& event) {
    if (const auto signal = event.number(EventField::signal))
        return describe(ExitStatus::signaled(static_cast<int>(*signal)));
    return describe(ExitStatus::exited(static_cast<int>(event.number(EventField::exit).value_or(0))));
}

}  // namespace tarnik
