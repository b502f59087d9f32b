#include "app/control/StatusOnDisk.h"

#include <vector>

#include "app/bundle/BuildKind.h"
#include "app/control/PolicyStatus.h"
#include "app/journal/Explanation.h"
#include "app/journal/Journal.h"
#include "app/journal/JournalReader.h"
#include "app/texts/StatusTexts.h"
#include "core/node/InstalledVersion.h"

namespace tarnik {
namespace {

// Returns the sentences of all explanations, or std::nullopt without any.
std::optional<std::string> reasonOf(const std::vector<JournalEvent>& events, WallTime now) {
    std::string all;
    for (const auto& explanation : explain(events, now)) {
        if (explanation.subject == Explanation::Subject::helper ||
            explanation.subject == Explanation::Subject::driver)
            continue;  // they don't run either
        if (!all.empty()) all += ' ';
        all += explanation.sentence;
    }
    return all.empty() ? std::nullopt : std::optional(std::move(all));
}

// Returns the history of the last run without what has ended with it.
RunHistory pastOf(const std::vector<JournalEvent>& events) {
    auto past = RunHistory::of(events);
    for (auto* child : {&past.helper, &past.driver}) {
        child->pid.reset();
        child->since.reset();
        child->nextTry.reset();
    }
    return past;
}

}  // namespace

Status statusOnDisk(const std::expected<NodeHome, NodeHome::ResolveError>& home, const SystemFolders& folders,
                    WallTime now, const PolicyReading& policy) {
    const auto path = folders.stateFolder() + "/" + std::string(Journal::fileName);
    const auto events = readJournal(path, Journal::keptEvents);
    const auto past = pastOf(events);
    const bool isInstalled = home && home->isInstalled();
    const auto helperState = isInstalled ? HelperState::stopped : HelperState::notInstalled;
    const auto installState = isInstalled ? InstallState::done : InstallState::missing;
    return {.program = {.version = std::string(programVersion())},
            .connection = {.state = std::string(ConnectionState::notRunning),
                           .sentence = StatusTexts::notRunning,
                           .reason = home ? reasonOf(events, now) : describe(home.error()),
                           .joined = home && home->hasJoined()},
            .helper = {.state = std::string(helperState),
                       .version = home ? installedVersion(*home) : std::nullopt,
                       .history = past.helper},
            .driver = {.state = std::string(DriverState::stopped), .history = past.driver},
            .update = {.state = std::string(past.waitingUpdate ? UpdateState::waiting : UpdateState::none),
                       .version = past.waitingUpdate},
            .install = {.state = std::string(installState)},
            .folders = {.nodeHome = home ? std::optional(home->path) : std::nullopt,
                        .applicationSupport = folders.applicationSupport,
                        .logs = folders.stateFolder()},
            .policy = policyStatus(policy)};
}

}  // namespace tarnik
