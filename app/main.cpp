#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "app/ProcessGround.h"
#include "app/SignalWatch.h"
#include "app/console/Console.h"
#include "app/console/ConsoleLoop.h"
#include "app/console/ConsoleOptions.h"
#include "core/foundation/UserHome.h"

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

int runConsole(const ConsoleOptions& options) {
    auto inherited = inheritedEnvironment();
    const std::string userFolder = homeDirectory(inherited);
    auto home = NodeHome::resolve(options.nodeHome, userFolder);
    if (!home) return refuse(describe(home.error()));
    struct stat entry{};
    if (::stat(home->path.c_str(), &entry) == 0 && !S_ISDIR(entry.st_mode)) {
        return refuse("the node folder " + home->path + " isn't a folder");
    }
    auto wake = Spawner::pipe();
    if (!wake) return refuse(describe(wake.error()));

    auto deps = NodeSupervisorDeps::production();
    deps.connectedAfter = options.connectedAfter;
    deps.nodeLog = NodeLog::make(NodeLog::defaultPath(userFolder));

    const auto loop = std::make_shared<ConsoleLoop>(STDIN_FILENO, std::move(*wake));
    std::function<void(int)> onSignal;
    const SignalWatch signals([&](int signal) { loop->post([&onSignal, signal] { onSignal(signal); }); });
    Console console(loop, std::move(*home), std::move(inherited), std::move(deps));
    onSignal = [&console](int signal) { console.onSignal(signal); };
    console.start();
    loop->run({.onLine = [&](const std::string& line) { console.onLine(line); },
               .onLineTooLong = [&] { console.onLineTooLong(); },
               .onEndOfInput = [&] { console.quit(); }});
    return EXIT_SUCCESS;
}

int run(const std::vector<std::string>& words) {
    const auto options = ConsoleOptions::parse(words);
    if (!options) return refuse(options.error());
    if (options->help) {
        std::fputs(ConsoleOptions::usage, stdout);
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
