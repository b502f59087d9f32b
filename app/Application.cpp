#include "app/Application.h"

#include <cstdlib>
#include <utility>

#include <unistd.h>

#include "app/ProcessSetup.h"
#include "app/bundle/BuildKind.h"
#include "app/control/ControlFolder.h"
#include "app/control/PolicyStatus.h"
#include "app/journal/ChildRecorder.h"
#include "app/journal/RecordedOperations.h"
#include "app/journal/StateRecorder.h"
#include "app/model/ChosenHome.h"
#include "app/report/ReportChild.h"
#include "app/texts/FailureTexts.h"
#include "app/texts/JournalTexts.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

constexpr Seconds stopLimit = Seconds(50);  // stopping the children takes up to 36 s
constexpr Seconds finishLimit = Seconds(5);

// Replaces the node home of the preferences with the node home of the command line.
Application::Platform withNodeHome(Application::Platform platform,
                                   const std::optional<std::string>& nodeHome) {
    auto& text = platform.model.defaults.text;
    if (nodeHome)
        text = [nodeHome, others = text](const std::string& key) {
            return key == TarnikIdentity::nodeHomeDefaultsKey ? nodeHome : others(key);
        };
    return platform;
}

Journal::Deps journalDeps(const Policy& policy) {
    auto deps = Journal::Deps::production();
    if (policy.programLogBytes) deps.fileBytes = policy.programLogBytes->value;
    return deps;
}

// Delays the launch until the switches are known or a time-out has passed. A launch that treats unknown
// switches as off would show the window without a reason.
OnRelocated whenSwitchesAreKnown(const SwitchOperations& switches, OnRelocated done) {
    if (!switches.whenKnown) return done;
    return [whenKnown = switches.whenKnown, done = std::move(done)](const RelocationOutcome& outcome) {
        whenKnown([done, outcome] { done(outcome); });
    };
}

}  // namespace

Application::Application(const CommandLine& line, HostEnvironment host, const ProgramLocation& place,
                         Platform platform)
    : place_(place),
      platform_(withNodeHome(std::move(platform), line.nodeHome)),
      journal_(std::make_shared<Journal>(Journal::pathIn(place_.folders), journalDeps(host.policy.policy))),
      model_(makeModel(line, std::move(host))),
      facts_(JournalFacts::Deps::production(*model_, platform_.model.mainThread, tasks_), journal_, model_) {
    recordStart(*journal_, model_->state().homeError);
    if (const auto warnings = model_->host().policy.warnings(); !warnings.empty()) warningLog()(warnings);
    model_->observe([journal = journal_](const AppState& now, const AppState& next) {
        recordChange(*journal, now, next);
        if (next.stopping && !now.stopping) endWithin(stopLimit, EXIT_FAILURE);
    });
}

Application::~Application() = default;

std::shared_ptr<AppModel> Application::makeModel(const CommandLine& line, HostEnvironment host) const {
    auto platform = platform_.model;
    platform.detach = [tasks = tasks_](const std::string& label, BackgroundTasks::Task task) {
        return tasks.start(label, std::move(task));
    };
    // Only the installed copy is added to the list, because the user may move or delete any other copy.
    if (place_.bundle != platform_.installPath) platform.loginItem = {};
    auto deps = AppModelDeps::production(std::move(platform), host.proxies.lookup());
    deps.driver = platform_.driver;
    deps.driver.onEvent = recordDriver(journal_);
    const auto home = chosenHome(deps.platform.defaults, host.userFolder);
    deps.supervisor.onEvent = recordHelper(journal_, home ? std::optional(*home) : std::nullopt);
    deps.supervisor.connectedAfter = line.connectedAfter;
    deps.installer = recorded(journal_, std::move(deps.installer));
    if (line.keepAwake) {
        deps.activity = [path = *line.keepAwake](auto nodePID, auto driverPID) {
            auto sources = ActivitySources::production(std::move(nodePID), std::move(driverPID));
            sources.holderPath = path;
            return sources;
        };
    }
    return std::make_shared<AppModel>(std::move(host), std::move(deps));
}

// The journal has these lines too, because a service has no other log.
SystemLog Application::warningLog() const {
    return [log = platform_.model.log, journal = journal_](const std::string& line) {
        log(line);
        journal->record(EventCode::programWarning, JournalTexts::programWarning(line));
    };
}

AppDelegate& Application::attach(Face face) {
    const auto& mainThread = platform_.model.mainThread;
    const auto& applicationSupport = place_.folders.applicationSupport;
    const SystemLog log = warningLog();
    relocator_.emplace(RelocatorDeps::production(platform_.bundles, mainThread, applicationSupport));
    homeOwner_.emplace(model_->home(), NodeHomeOwner::Deps{.mainThread = mainThread,
                                                           .log = log,
                                                           .applicationSupport = applicationSupport,
                                                           .face = face.kind});
    return delegate_.emplace(
        AppDelegateDeps{
            .bundlePath = place_.bundle,
            .installPath = platform_.installPath,
            .relocateIfNeeded =
                [this](auto done) {
                    relocator_->relocateIfNeeded(whenSwitchesAreKnown(
                        platform_.model.switches, recordedOutcome(journal_, std::move(done))));
                },
            .recordWindow = [this](const std::string& reason) { relocator_->recordWindow(reason); },
            .handLinkOn = [this](const std::string& link) { relocator_->handLinkOn(link); },
            .takeHandedLink = [this] { return relocator_->takeHandedLink(); },
            .takeNodeHome =
                [this, kind = face.kind](auto done) {
                    homeOwner_->take(
                        recordedOwner(journal_, [this, kind, done = std::move(done)](const auto& inUse) {
                            if (!inUse) startControl(kind);
                            done(inUse);
                        }));
                },
            .ensureLoginItem = [this] { model_->loginItem().ensureRegistered(); },
            .makeUpdater =
                [this] {
                    const auto settings =
                        place_.bundle ? UpdateSettings::fromBundle(*place_.bundle) : UpdateSettings{};
                    auto updater = std::make_unique<Updater>(
                        settings, Updater::Deps{.framework = recorded(journal_, platform_.updates),
                                                .mainThread = platform_.model.mainThread,
                                                .log = platform_.updaterLog,
                                                .rule = model_->host().policy.policy.updates});
                    facts_.setChecksForUpdates(updater->isAutomatic());
                    return updater;
                },
            .takesLinks = std::move(face.onReady),
            .showsWindow = face.showsWindow,
            .mainThread = mainThread,
            .presentation = std::move(face.presentation),
            .events = recorded(journal_, platform_.events)},
        model_);
}

// The details may be wanted just when the system is too busy for another thread.
void Application::makeReport(
    const std::function<void(const std::expected<std::string, std::string>&)>& done) const {
    const auto& post = platform_.model.mainThread.post;
    const ReportChild report{
        .executable = place_.executable,
        .environment = model_->host().inherited,
        .nodeHome = platform_.model.defaults.text(std::string(TarnikIdentity::nodeHomeDefaultsKey)),
        .bundle = isDevelopmentBuild() ? place_.bundle : std::nullopt};
    const bool started = tasks_.start(
        "tarnik.report", [report, post, done] { post([done, text = report.run()] { done(text); }); });
    if (!started) post([done] { done(std::unexpected(std::string(FailureTexts::tooBusy))); });
}

void Application::launch() {
    delegate_->willFinishLaunching();
    platform_.model.mainThread.post([this] { delegate_->didFinishLaunching(); });
}

// A second program on the same node home has no socket, so a command always reaches the first one.
void Application::startControl(NodeHomeOwner::Face face) {
    const auto& host = model_->host();
    const auto& home = model_->home();
    std::function<void()> openWindow = [this] { delegate_->openWindow(); };
    if (face == NodeHomeOwner::Face::service) openWindow = nullptr;
    const SystemLog log = warningLog();
    control_.emplace(
        ControlService::Deps{
            .mainThread = platform_.model.mainThread,
            .log = log,
            .journal = journal_,
            .folders = ControlFolder::candidates(host.inherited, place_.folders),
            .source = {.program = {.isRunning = true,
                                   .version = std::string(programVersion()),
                                   .pid = ::getpid(),
                                   .face = std::string(NodeHomeOwner::wordOf(face))},
                       .folders = {.nodeHome = home ? std::optional(home->path) : std::nullopt,
                                   .applicationSupport = place_.folders.applicationSupport,
                                   .logs = place_.folders.stateFolder()},
                       .webOrigin = model_->webOrigin(),
                       .hasDriver = host.driverExecutable.has_value(),
                       .policy = policyStatus(host.policy),
                       .checksForUpdates = [this] { return delegate_->hasUpdater(); }},
            .openWindow = std::move(openWindow),
            .quit = [this] { delegate_->quit(); },
            .detach = [this](const std::string& label,
                             BackgroundTasks::Task task) { return tasks_.start(label, std::move(task)); }},
        model_);
}

int Application::finish(int exitStatus) {
    endWithin(finishLimit, exitStatus);
    control_.reset();
    recordEnd(*journal_, exitStatus);
    if (!tasks_.isIdle()) ::_exit(exitStatus);
    return exitStatus;
}

}  // namespace tarnik
