#include "app/journal/ChildRecorder.h"

#include <functional>
#include <string>
#include <utility>

#include "app/texts/JournalTexts.h"
#include "core/node/InstalledVersion.h"

namespace tarnik {
namespace {

using Version = std::function<std::optional<std::string>()>;

// The codes and the name of one child.
struct Names {
    const char* child;
    EventCode started;
    EventCode startFailed;
    EventCode ended;
    EventCode stopped;
    EventCode restart;
};

constexpr Names helperNames{.child = JournalTexts::helper,
                            .started = EventCode::helperStarted,
                            .startFailed = EventCode::helperStartFailed,
                            .ended = EventCode::helperEnded,
                            .stopped = EventCode::helperStopped,
                            .restart = EventCode::helperRestart};
constexpr Names driverNames{.child = JournalTexts::driver,
                            .started = EventCode::driverStarted,
                            .startFailed = EventCode::driverStartFailed,
                            .ended = EventCode::driverEnded,
                            .stopped = EventCode::driverStopped,
                            .restart = EventCode::driverRestart};

std::int64_t milliseconds(Seconds time) {
    return std::chrono::round<std::chrono::milliseconds>(time).count();
}

// Records the events of one child, and measures how long it ran.
class ChildRecorder {
public:
    ChildRecorder(std::shared_ptr<Journal> journal, const Names& names, Version version)
        : journal_(std::move(journal)), names_(names), version_(std::move(version)) {}

    void operator()(const ChildEvents::Started& event) {
        started_ = steadyNow();
        JournalEvent::Fields fields{{EventField::pid, event.pid}};
        const auto version = version_();
        if (version) fields.emplace(EventField::version, *version);
        journal_->record(names_.started, JournalTexts::started(names_.child, event.pid, version), fields);
    }

    void operator()(const ChildEvents::StartFailed& event) {
        started_.reset();
        journal_->record(names_.startFailed, JournalTexts::startFailed(names_.child, event.reason),
                         {{EventField::reason, event.reason}});
    }

    void operator()(const ChildEvents::Ended& event) {
        const bool exited = event.status.kind == ExitStatus::Kind::exited;
        JournalEvent::Fields fields{{exited ? EventField::exit : EventField::signal, event.status.number}};
        const auto ranFor = takeRunTime(fields);
        journal_->record(names_.ended, JournalTexts::ended(names_.child, event.status, ranFor), fields);
    }

    void operator()(const ChildEvents::Stopped&) {
        JournalEvent::Fields fields;
        const auto ranFor = takeRunTime(fields);
        journal_->record(names_.stopped, JournalTexts::stopped(names_.child, ranFor), fields);
    }

    void operator()(const ChildEvents::RestartPlanned& event) {
        journal_->record(names_.restart, JournalTexts::restart(names_.child, event.delay),
                         {{EventField::delay, milliseconds(event.delay)}});
    }

    // The helper's supervisor never gives up.
    void operator()(const ChildEvents::GivenUp&) {
        journal_->record(EventCode::driverGivenUp, JournalTexts::driverGivenUp);
    }

private:
    // Returns the time since the child was started, and adds it to the fields. A connect command that has
    // become the node was never reported as started; its time is unknown.
    std::optional<Seconds> takeRunTime(JournalEvent::Fields& fields) {
        if (!started_) return std::nullopt;
        const Seconds ranFor = steadyNow() - *std::exchange(started_, std::nullopt);
        fields.emplace(EventField::ranFor, milliseconds(ranFor));
        return ranFor;
    }

    const std::shared_ptr<Journal> journal_;
    const Names names_;
    const Version version_;
    std::optional<TimePoint> started_;
};

OnChildEvent callbackOf(std::shared_ptr<ChildRecorder> recorder) {
    return [recorder = std::move(recorder)](const ChildEvent& event) { std::visit(*recorder, event); };
}

}  // namespace

OnChildEvent recordHelper(const std::shared_ptr<Journal>& journal, std::optional<NodeHome> home) {
    const Version version = [home = std::move(home)] {
        return home ? installedVersion(*home) : std::nullopt;
    };
    return callbackOf(std::make_shared<ChildRecorder>(journal, helperNames, version));
}

OnChildEvent recordDriver(const std::shared_ptr<Journal>& journal) {
    const Version version = [] { return std::nullopt; };
    return callbackOf(std::make_shared<ChildRecorder>(journal, driverNames, version));
}

}  // namespace tarnik
