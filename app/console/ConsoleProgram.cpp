#include "app/console/ConsoleProgram.h"

#include <cstdlib>
#include <memory>
#include <utility>

#include <unistd.h>

#include "app/AppDelegate.h"
#include "app/CommandLineDeps.h"
#include "app/NodeHomeOwner.h"
#include "app/SignalWatcher.h"
#include "app/console/Console.h"
#include "app/console/ConsoleLoop.h"
#include "app/console/DriverOutput.h"
#include "app/model/PlainSentence.h"
#include "app/model/UpdateSettings.h"
#include "app/relocation/Relocator.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

// Holds what the command line chose, and only for this run.
UserDefaults defaultsOf(const CommandLine& line) {
    return {.text = [home = line.nodeHome](const std::string& key) -> std::optional<std::string> {
                return key == TarnikIdentity::nodeHomeDefaultsKey ? home : std::nullopt;
            },
            .flag = [](const std::string&) { return false; },
            .setFlag = [](const std::string&) {}};
}

AppModelDeps consoleDeps(const CommandLine& line, const AppPlatform& platform, const BackgroundTasks& work,
                         ConsoleOutput& output) {
    auto deps = modelDeps(line, platform, work);
    if (line.driverOutput) {
        deps.driver = DriverHostDeps::production(
            [mainThread = platform.mainThread, &output] { return attachDriverOutput(mainThread, output); });
    }
    return deps;
}

}  // namespace

int runConsole(const CommandLine& line, Machine machine, const ProgramLocation& place) {
    auto wake = Spawner::pipe();
    if (!wake) {
        printError(messageFor(wake.error()));
        return EXIT_FAILURE;
    }
    const BackgroundTasks work;
    ConsoleOutput output;
    SimulatedSwitches switches(output, {line.switchesOn, line.switchesOn});
    const auto loop = std::make_shared<ConsoleLoop>(STDIN_FILENO, std::move(*wake));
    std::function<void(int)> onSignal;
    const SignalWatcher signals([&](int signal) { loop->post([&onSignal, signal] { onSignal(signal); }); });
    const auto mainThread = loop->mainThread();
    const SystemLog log = [mainThread, &output](const std::string& text) {
        mainThread.post([&output, text] { output.message(text); });
    };
    const auto applicationSupport = machine.applicationSupport;
    const auto model = AppModel::make(std::move(machine), consoleDeps(line,
                                                                      {.mainThread = mainThread,
                                                                       .defaults = defaultsOf(line),
                                                                       .switches = switches.operations(),
                                                                       .log = log,
                                                                       .windowInUse = [] { return false; }},
                                                                      work, output));
    if (model->state().homeError) return refuseStart(*model->state().homeError);
    Console console(mainThread, output, switches, model, [&loop] { loop->closeInput(); });
    Relocator relocator(RelocatorDeps::production(BundleOperations{}, mainThread, applicationSupport));
    NodeHomeOwner homeOwner(model->home(), {.mainThread = mainThread,
                                            .log = log,
                                            .applicationSupport = applicationSupport,
                                            .face = NodeHomeOwner::Face::console});
    AppDelegate delegate(
        {.bundlePath = place.bundle,
         .relocateIfNeeded = [&](auto done) { relocator.relocateIfNeeded(std::move(done)); },
         .recordWindow = [&](const std::string& reason) { relocator.recordWindow(reason); },
         .handLinkOn = [](const std::string&) {},
         .takeHandedLink = [] { return std::nullopt; },
         .takeNodeHome = [&](auto done) { homeOwner.take(std::move(done)); },
         .ensureLoginItem = [] {},
         .makeUpdater =
             [&] {
                 const auto settings =
                     place.bundle ? UpdateSettings::fromBundle(*place.bundle) : UpdateSettings{};
                 return std::make_unique<Updater>(
                     settings, Updater::Deps{.framework = {}, .mainThread = mainThread, .log = log});
             },
         .takesLinks = [&loop] { loop->openInput(); },
         .mainThread = mainThread,
         .presentation = console.presentation([&loop] { loop->quit(); }),
         .events = {.onLink = [](const auto&) {},
                    .onSecondOpen = [](const auto&) {},
                    .onBecameActive = [](const auto&) {}}},
        model);
    console.attach(delegate);
    onSignal = [&console](int signal) { console.onSignal(signal); };
    if (line.link) console.pairWhenReady(*line.link);
    delegate.willFinishLaunching();
    loop->post([&delegate] { delegate.didFinishLaunching(); });
    loop->run({.onLine = [&](const std::string& typed) { console.onLine(typed); },
               .onLineTooLong = [&] { console.onLineTooLong(); },
               .onEndOfInput = [&] { console.onEndOfInput(); }});
    // A transfer that goes on leaves nothing behind that matters, and nobody should wait for it.
    if (!work.isIdle()) ::_exit(console.exitStatus());
    return console.exitStatus();
}

}  // namespace tarnik
