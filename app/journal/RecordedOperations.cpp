#include "app/journal/RecordedOperations.h"

#include <utility>

#include <unistd.h>

#include "app/bundle/BuildKind.h"
#include "app/texts/JournalTexts.h"

namespace tarnik {
namespace {

constexpr Seconds flushTimeout = Seconds(1);

using Handler = std::function<void()>;

// Returns a registration whose handler first records that the program was started again.
std::function<void(Handler)> recordedStarts(const std::shared_ptr<Journal>& journal,
                                            std::function<void(Handler)> registration) {
    return [journal, registration = std::move(registration)](Handler handler) {
        registration([journal, handler = std::move(handler)] {
            journal->record(EventCode::programSecondStart, JournalTexts::secondStart);
            handler();
        });
    };
}

}  // namespace

// An installation begins with its only call of `fetch`.
NodeInstallerDeps recorded(const std::shared_ptr<Journal>& journal, NodeInstallerDeps installer) {
    installer.fetch = [journal, fetch = std::move(installer.fetch)](const std::string& url) {
        journal->record(EventCode::installBegun, JournalTexts::installBegun);
        return fetch(url);
    };
    return installer;
}

UpdateFramework recorded(const std::shared_ptr<Journal>& journal, UpdateFramework framework) {
    if (!framework.makeController) return framework;
    framework.makeController = [journal, make = std::move(framework.makeController)](auto handler) {
        return make([journal, handler = std::move(handler)](const std::string& version, auto install) {
            journal->record(EventCode::updateWaiting, JournalTexts::updateWaiting(version),
                            {{EventField::version, version}});
            return handler(version, [journal, version, install = std::move(install)] {
                journal->record(EventCode::updateInstalled, JournalTexts::updateInstalled(version),
                                {{EventField::version, version}});
                install();
            });
        });
    };
    return framework;
}

SystemEvents recorded(const std::shared_ptr<Journal>& journal, SystemEvents events) {
    events.onSecondOpen = recordedStarts(journal, std::move(events.onSecondOpen));
    return events;
}

OnRelocated recordedOutcome(const std::shared_ptr<Journal>& journal, OnRelocated done) {
    return [journal, done = std::move(done)](const RelocationOutcome& outcome) {
        if (std::holds_alternative<RelocationOutcomes::Moving>(outcome))
            journal->record(EventCode::programRelocation, JournalTexts::moved);
        if (const auto* stay = std::get_if<RelocationOutcomes::StayWithMessage>(&outcome))
            journal->record(EventCode::programRelocation, JournalTexts::relocationMessage(stay->title));
        done(outcome);
    };
}

OnHomeTaken recordedOwner(const std::shared_ptr<Journal>& journal, OnHomeTaken done) {
    return [journal, done = std::move(done)](const std::optional<std::string>& inUse) {
        if (inUse) journal->record(EventCode::programAnotherCopy, *inUse);
        done(inUse);
    };
}

void recordStart(Journal& journal, const std::optional<std::string>& homeError) {
    const std::string version(programVersion());
    const auto pid = ::getpid();
    journal.record(EventCode::programStarted, JournalTexts::programStarted(version, pid),
                   {{EventField::pid, pid}, {EventField::version, version}});
    if (homeError) journal.record(EventCode::homeUnusable, *homeError);
}

void recordEnd(Journal& journal, int exitStatus) {
    journal.record(EventCode::programEnded, JournalTexts::programEnded(exitStatus),
                   {{EventField::exit, exitStatus}});
    journal.flush(flushTimeout);
}

}  // namespace tarnik
