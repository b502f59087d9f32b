#include "app/JournalFacts.h"

#include <utility>

#include "app/journal/Explanation.h"
#include "core/foundation/LogTail.h"
#include "core/node/InstalledVersion.h"

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
    : deps_(std::move(deps)), journal_(journal), model_(model), history_(RunHistory::of(journal->events())) {
    const auto post = guard_.wrapPost(deps_.mainThread.post);
    journal->observe([this, post](const JournalEvent& event) { post([this, event] { apply(event); }); });
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
    helper.lastLines = helper.trouble ? lastLines_ : "";
    if (helper.trouble) logTimer_ = deps_.mainThread.repeat(logDelay, [this] { readLastLines(); });
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

// Skipped while an earlier read still runs, for example because the disk hangs.
void JournalFacts::readLastLines() {
    logTimer_.reset();
    if (isReading_) return;
    isReading_ = deps_.detach("tarnik.helper-log",
                              [this, read = deps_.lastLines, post = guard_.wrapPost(deps_.mainThread.post)] {
                                  post([this, lines = read()] {
                                      isReading_ = false;
                                      lastLines_ = lines;
                                      if (!facts_.helper.trouble) return;
                                      facts_.helper.lastLines = lines;
                                      publish();
                                  });
                              });
}

void JournalFacts::publish() const {
    if (const auto model = model_.lock()) model->setFacts(facts_);
}

}  // namespace tarnik
