#include "app/Application.h"

#include <utility>

#include <unistd.h>

#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

// Replaces the node home of the preferences with the one of the command line.
UserDefaults withNodeHome(UserDefaults defaults, const std::optional<std::string>& nodeHome) {
    if (!nodeHome) return defaults;
    defaults.text = [nodeHome, others = defaults.text](const std::string& key) {
        return key == TarnikIdentity::nodeHomeDefaultsKey ? nodeHome : others(key);
    };
    return defaults;
}

using OnRelocated = std::function<void(RelocationOutcome)>;

// Delays the launch until the switches are known. A launch that took unknown switches for off would show the
// window for no reason.
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
      platform_(std::move(platform)),
      model_(std::make_shared<AppModel>(std::move(host), modelDeps(line))) {}

Application::~Application() = default;

AppModelDeps Application::modelDeps(const CommandLine& line) const {
    auto platform = platform_.model;
    platform.defaults = withNodeHome(platform.defaults, line.nodeHome);
    platform.detach = [tasks = tasks_](const std::string& label, BackgroundTasks::Task task) {
        return tasks.start(label, std::move(task));
    };
    auto deps = AppModelDeps::production(std::move(platform));
    deps.driver = platform_.driver;
    deps.supervisor.connectedAfter = line.connectedAfter;
    if (line.keepAwake) {
        deps.activity = [path = *line.keepAwake](auto nodePID, auto driverPID) {
            auto sources = ActivitySources::production(std::move(nodePID), std::move(driverPID));
            sources.holderPath = path;
            return sources;
        };
    }
    return deps;
}

AppDelegate& Application::attach(Face face) {
    const auto& mainThread = platform_.model.mainThread;
    const auto& applicationSupport = place_.folders.applicationSupport;
    relocator_.emplace(RelocatorDeps::production(platform_.bundles, mainThread, applicationSupport));
    homeOwner_.emplace(model_->home(), NodeHomeOwner::Deps{.mainThread = mainThread,
                                                           .log = platform_.model.log,
                                                           .applicationSupport = applicationSupport,
                                                           .face = face.kind});
    return delegate_.emplace(
        AppDelegateDeps{
            .bundlePath = place_.bundle,
            .installPath = platform_.installPath,
            .relocateIfNeeded =
                [this](auto done) {
                    relocator_->relocateIfNeeded(
                        whenSwitchesAreKnown(platform_.model.switches, std::move(done)));
                },
            .recordWindow = [this](const std::string& reason) { relocator_->recordWindow(reason); },
            .handLinkOn = [this](const std::string& link) { relocator_->handLinkOn(link); },
            .takeHandedLink = [this] { return relocator_->takeHandedLink(); },
            .takeNodeHome = [this](auto done) { homeOwner_->take(std::move(done)); },
            .ensureLoginItem =
                [this] {
                    if (!platform_.loginItem.registerItem) return;
                    tasks_.start("tarnik.login-item",
                                 [service = platform_.loginItem] { tarnik::ensureLoginItem(service); });
                },
            .makeUpdater =
                [this] {
                    const auto settings =
                        place_.bundle ? UpdateSettings::fromBundle(*place_.bundle) : UpdateSettings{};
                    return std::make_unique<Updater>(settings,
                                                     Updater::Deps{.framework = platform_.updates,
                                                                   .mainThread = platform_.model.mainThread,
                                                                   .log = platform_.updaterLog});
                },
            .takesLinks = std::move(face.onReady),
            .showsWindow = face.showsWindow,
            .mainThread = mainThread,
            .presentation = std::move(face.presentation),
            .events = platform_.events},
        model_);
}

void Application::launch() {
    delegate_->willFinishLaunching();
    platform_.model.mainThread.post([this] { delegate_->didFinishLaunching(); });
}

int Application::finish(int exitStatus) const {
    if (!tasks_.isIdle()) ::_exit(exitStatus);
    return exitStatus;
}

void ensureLoginItem(const LoginItemService& service) {
    if (!service.registerItem || service.isEnabled()) return;
    // Registering fails most often because the user removed the item from the list on purpose.
    (void)service.registerItem();
}

}  // namespace tarnik
