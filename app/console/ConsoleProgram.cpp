#include "app/console/ConsoleProgram.h"

#include <cstdlib>
#include <memory>
#include <utility>

#include <unistd.h>

#include "app/Application.h"
#include "app/SignalWatcher.h"
#include "app/console/Console.h"
#include "app/console/ConsoleLoop.h"
#include "app/console/DriverOutput.h"
#include "app/console/HeadlessPlatform.h"
#include "app/texts/FailureTexts.h"

namespace tarnik {
int runConsole(const CommandLine& line, HostEnvironment host, const ProgramLocation& place) {
    auto wake = Spawner::pipe();
    if (!wake) {
        printError(messageFor(wake.error()));
        return EXIT_FAILURE;
    }
    ConsoleOutput output;
    SimulatedSwitches switches(output, {line.switchesOn, line.switchesOn});
    const auto loop = std::make_shared<ConsoleLoop>(STDIN_FILENO, std::move(*wake));
    std::function<void(int)> onSignal;
    const SignalWatcher signals([&](int signal) { loop->post([&onSignal, signal] { onSignal(signal); }); });
    const auto mainThread = loop->mainThread();
    const SystemLog log = [mainThread, &output](const std::string& text) {
        mainThread.post([&output, text] { output.message(text); });
    };
    auto driver = DriverHostDeps::production();
    if (line.driverOutput) {
        driver = DriverHostDeps::production(
            [mainThread, &output] { return attachDriverOutput(mainThread, output); });
    }
    auto platform = headlessPlatform(mainThread, switches.operations(), log);
    platform.driver = std::move(driver);
    Application application(line, std::move(host), place, std::move(platform));
    const auto& model = application.model();
    if (model->state().homeError) return application.finish(refuseStart(*model->state().homeError));
    Console console(mainThread, output, switches, model, [&loop] { loop->closeInput(); });
    AppDelegate& delegate =
        application.attach({.kind = NodeHomeOwner::Face::console,
                            .presentation = console.presentation([&loop] { loop->quit(); }),
                            .onReady = [&loop] { loop->openInput(); }});
    console.attach(delegate);
    onSignal = [&console](int signal) { console.onSignal(signal); };
    if (line.link) console.pairWhenReady(*line.link);
    application.launch();
    loop->run({.onLine = [&](const std::string& typed) { console.onLine(typed); },
               .onLineTooLong = [&] { console.onLineTooLong(); },
               .onEndOfInput = [&] { console.onEndOfInput(); }});
    return application.finish(console.exitStatus());
}

}  // namespace tarnik
