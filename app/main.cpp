#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

#include "app/OwnBundle.h"
#include "app/ProcessGround.h"
#include "app/SignalWatch.h"
#include "app/console/Console.h"
#include "app/console/ConsoleLoop.h"
#include "app/console/ConsoleOptions.h"
#include "app/model/BuildSettings.h"
#include "core/driver/BundledDriver.h"
#include "core/driver/ProcessInspection.h"
#include "core/foundation/Files.h"
#include "core/foundation/UserHome.h"
#include "core/node/TarnikIdentity.h"
#include "core/updates/KeepAwakeHolder.h"

extern char** environ;

namespace tarnik {
namespace {

constexpr int usageStatus = 2;

int refuse(const std::string& why) {
    std::fputs(("tarnik: " + why + "\n").c_str(), stderr);
    return usageStatus;
}

Environment inheritedEnvironment() {
    Environment environment;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const auto equals = text.find('=');
        if (equals != std::string::npos) environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return environment;
}

std::string homeDirectory(const Environment& environment) {
    const auto home = environment.find("HOME");
    return home != environment.end() && home->second.starts_with('/') ? home->second : userHome();
}

// The bundle that this program runs from.
std::optional<std::string> ownBundle() {
    const auto executable = ProcessInspection::executablePath(::getpid());
    return executable ? bundleOf(*executable) : std::nullopt;
}

std::optional<std::string> resourceFolder(const std::optional<std::string>& bundle) {
    if (!bundle) return std::nullopt;
    return *bundle + "/Contents/Resources";
}

int runConsole(const ConsoleOptions& options) {
    auto inherited = inheritedEnvironment();
    const std::string userFolder = homeDirectory(inherited);
    auto home = NodeHome::resolve(options.nodeHome, userFolder);
    if (!home) return refuse(describe(home.error()));
    if (exists(home->path) && !isFolder(home->path)) {
        return refuse("the node folder " + home->path + " isn't a folder");
    }
    if (options.bundle && !isFolder(*options.bundle))
        return refuse(*options.bundle + " isn't a bundle folder");
    const std::string applicationSupport = userFolder + "/Library/Application Support";
    if (const auto made = createFolders(applicationSupport, 0700); !made) {
        std::fputs(("tarnik: " + describe(made.error()) + "\n").c_str(), stderr);  // all but the driver works
    }
    auto wake = Spawner::pipe();
    if (!wake) return refuse(describe(wake.error()));

    const auto bundle = options.bundle ? options.bundle : ownBundle();
    const auto settings = bundle ? BuildSettings::fromBundle(*bundle) : BuildSettings::fromPropertyList({});
    Console::Machine machine{
        .home = std::move(*home),
        .userFolder = userFolder,
        .inherited = inherited,
        .webOrigin = settings.webOrigin,
        .install = {.releaseBase = settings.nodeReleaseBase,
                    .releasePublicKey = settings.nodeReleasePublicKey,
                    .platform = std::string(NodeRelease::hostPlatform),
                    .minimumVersion = settings.nodeMinVersion,
                    .developmentRuntime = settings.developmentRuntime},
        .supervisor = NodeSupervisorDeps::production(),
        .driver = {.host = {.executable = BundledDriver::path(resourceFolder(bundle)),
                            .applicationSupport = applicationSupport,
                            .hostBundleID = std::string(TarnikIdentity::bundleIdentifier),
                            .inherited = inherited},
                   .switches = {options.switchesOn, options.switchesOn},
                   .showsOutput = options.driverOutput},
        .keepAwakePath = options.keepAwake.value_or(std::string(KeepAwakeHolder::path))};
    machine.supervisor.connectedAfter = options.connectedAfter;
    machine.supervisor.nodeLog = NodeLog::make(NodeLog::defaultPath(userFolder));

    const auto loop = std::make_shared<ConsoleLoop>(STDIN_FILENO, std::move(*wake));
    std::function<void(int)> onSignal;
    const SignalWatch signals([&](int signal) { loop->post([&onSignal, signal] { onSignal(signal); }); });
    Console console(loop, std::move(machine));
    onSignal = [&console](int signal) { console.onSignal(signal); };
    console.start(options.link);
    loop->run({.onLine = [&](const std::string& line) { console.onLine(line); },
               .onLineTooLong = [&] { console.onLineTooLong(); },
               .onEndOfInput = [&] { console.onEndOfInput(); }});
    if (console.waitsForNetwork()) ::_exit(console.exitStatus());
    return console.exitStatus();
}

int run(const std::vector<std::string>& words) {
    const auto build = ConsoleOptions::thisBuild();
    const auto options = ConsoleOptions::parse(words, build);
    if (!options) return refuse(options.error());
    if (options->help) {
        std::fputs(ConsoleOptions::usage(build).c_str(), stdout);
        return EXIT_SUCCESS;
    }
    if (!options->console) return refuse("there is no window yet; start it with --console");
    return runConsole(*options);
}

}  // namespace
}  // namespace tarnik

int main(int argc, char** argv) {
    tarnik::layProcessGround();
    return tarnik::run(std::vector<std::string>(argv + 1, argv + argc));
}
