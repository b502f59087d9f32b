#include "app/JournalFacts.h"

#include <utility>

#include "app/journal/Explanation.h"
#include "core/foundation/LogTail.h"
#include "core/node/InstalledVersion.h"
#include "core/node/RestartBackoff.h"

namespace tarnik {

JournalFacts::Deps JournalFacts::Deps::production(const AppModel& model, MainThread mainThread,
                                                  const BackgroundTasks& tasks) {
    constexpr std::size_t logBytes = 16'384;
    constexpr std::size_t logLines = 50;
    return {.mainThread = std::move(mainThread),
            .detach = [tasks](const std::string& label,
                              BackgroundTasks::Task task) { return tasks.start(label, std::move(task)); },
            .installedVersion =
                [home = model.home()] { return home ? tarnik::installedVersion(*home).value_or("") : ""; },
            .lastLines =
                [log = model.host().nodeLog] {
                    return std::string(tarnik::lastLines(readLogTail(log, logBytes), logLines));
                }};
}

JournalFacts::JournalFacts(Deps deps, const std::shared_ptr<Journal>& journal,
                           const std::shared_ptr<AppModel>& model)
    : deps_(std::move(deps)), journal_(journal), model_(model) {
    const auto post = guard_.wrapPost(deps_.mainThread.post);
    history_ = RunHistory::of(
        journal->observe([this, post](const JournalEvent& event) { post([this, event] { apply(event); }); }));
}

void JournalFacts::setChecksForUpdates(bool checks) {
    facts_.checksForUpdates = checks;
    publish();
}

void JournalFacts::apply(const JournalEvent& event) {
    const auto journal = journal_.lock();
    if (!journal) return;
    history_.apply(event);
    facts_.waitingUpdate = history_.waitingUpdate;
    const auto name = nameOf(event.code);
    if (name.starts_with("driver.")) facts_.driverHasGivenUp = event.code == EventCode::driverGivenUp;
    if (name.starts_with("helper.") || event.code == EventCode::pairingConnected)
        applyToHelper(event, *journal);
    publish();
}

// The connect command becomes the helper when the pairing has connected. That event has no version.
void JournalFacts::applyToHelper(const JournalEvent& event, const Journal& journal) {
    auto& helper = facts_.helper;
    helper.since = history_.helper.since;
    helper.trouble = helperTrouble(journal.events());
    healthTimer_.reset();
    if (!helper.trouble) {
        helper.lastLines.clear();
        logTimer_.reset();
        isOutdated_ = true;
    } else if (helper.trouble->isRunning) {
        healthTimer_ = deps_.mainThread.repeat(RestartBackoff::healthyAfter, [this] { endTrouble(); });
    } else {
        logTimer_ = deps_.mainThread.repeat(logDelay, [this] { readLastLines(); });
    }
    if (event.code == EventCode::helperStarted) helper.version = event.text(EventField::version).value_or("");
    if (event.code == EventCode::pairingConnected) readVersion();
}

void JournalFacts::readVersion() {
    deps_.detach("tarnik.version",
                 [this, read = deps_.installedVersion, post = guard_.wrapPost(deps_.mainThread.post)] {
                     post([this, version = read()] {
                         facts_.helper.version = version;
                         publish();
                     });
                 });
}

// Runs one read at a time, because the disk may hang. A read that began before the latest failure is
// repeated.
void JournalFacts::readLastLines() {
    logTimer_.reset();
    isOutdated_ = isReading_;
    if (isReading_) return;
    isReading_ = deps_.detach("tarnik.helper-log",
                              [this, read = deps_.lastLines, post = guard_.wrapPost(deps_.mainThread.post)] {
                                  post([this, lines = read()] {
                                      isReading_ = false;
                                      if (!facts_.helper.trouble) return;
                                      if (isOutdated_) return readLastLines();
                                      facts_.helper.lastLines = lines;
                                      publish();
                                  });
                              });
}

void JournalFacts::endTrouble() {
    healthTimer_.reset();
    facts_.helper.trouble.reset();
    facts_.helper.lastLines.clear();
    isOutdated_ = true;
    publish();
}

void JournalFacts::publish() const {
    if (const auto model = model_.lock()) model->setFacts(facts_);
}

}  // namespace tarnik
