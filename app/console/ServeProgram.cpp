#include "app/console/ServeProgram.h"

#include <cstdlib>
#include <utility>

#include <unistd.h>

#include "app/Application.h"
#include "app/SignalWatcher.h"
#include "app/console/ConsoleLoop.h"
#include "app/console/HeadlessPlatform.h"
#include "app/console/ServiceNotification.h"
#include "app/console/ServiceOutput.h"
#include "app/options/ExitCode.h"
#include "app/texts/ConsoleTexts.h"
#include "app/texts/FailureTexts.h"

namespace tarnik {
namespace {

SwitchOperations switchesOff() {
    return {.isOn = [](Switch) { return false; },
            .prompt = [](Switch) { return false; },
            .openSettings = [](Switch) {}};
}

Presentation noWindow(int& exitStatus, const std::function<void()>& end) {
    return {
        .makeStatusItem = [](const MenuContent&) {},
        .showWindow = [] {},
        .showAlert = [](const std::string&, const std::string&) {},
        .fillLinkField = [](const std::string&) {},
        .refuse = [](const std::string&, const std::function<void()>& seen) { seen(); },  // in the journal
        .end =
            [&exitStatus, end](int status) {
                if (status != EXIT_SUCCESS) exitStatus = status;
                end();
            }};
}

// The output of the service: its lines, and the messages to its manager. Main thread.
struct ServiceReport {
    ServiceOutput output;
    ServiceNotification manager;

    void show(const JournalEvent& event) {
        output.event(event);
        manager.status(event.sentence);
        if (event.code == EventCode::helperWaiting) output.hint(ConsoleTexts::runConnect);
    }
};

}  // namespace

// The model's log is dropped, because the journal has an event for each of its messages.
int runServe(const CommandLine& line, HostEnvironment host, const ProgramLocation& place) {
    auto wake = Spawner::pipe();
    if (!wake) {
        printError(messageFor(wake.error()));
        return exitStatus(ExitCode::failed);
    }
    ServiceReport report{
        .output = ServiceOutput(STDOUT_FILENO, host.inherited),
        .manager = ServiceNotification(environmentValue(host.inherited, ServiceNotification::variable))};
    host.inherited.erase(ServiceNotification::variable);  // children must not answer for this program
    const auto loop = std::make_shared<ConsoleLoop>(STDIN_FILENO, std::move(*wake));
    const auto mainThread = loop->mainThread();
    AppDelegate* delegate = nullptr;
    const SignalWatcher signals([&](int signal) {
        loop->post([&delegate, signal] {
            if (delegate->isQuitting()) ::_exit(128 + signal);
            delegate->quit();
        });
    });
    Application application(line, std::move(host), place,
                            headlessPlatform(mainThread, switchesOff(), [](const std::string&) {}));
    const auto& model = application.model();
    if (model->state().homeError) return application.finish(refuseStart(*model->state().homeError));
    for (const auto& event : application.journal()->events()) report.show(event);
    application.journal()->observe([mainThread, &report](const JournalEvent& event) {
        mainThread.post([&report, event] { report.show(event); });
    });
    int status = EXIT_SUCCESS;
    delegate = &application.attach({.kind = NodeHomeOwner::Face::service,
                                    .presentation = noWindow(status, [&loop] { loop->quit(); }),
                                    .onReady = [&report] { report.manager.ready(); }});
    model->observe([&](const AppState& now, const AppState& next) {
        if (next.stopping && !now.stopping) report.manager.stopping();
        if (next.setup == now.setup || !std::holds_alternative<Setups::Failed>(next.setup)) return;
        status = exitStatus(ExitCode::failed);  // the manager starts the program again
        mainThread.post([&delegate] { delegate->quit(); });
    });
    application.launch();
    loop->run({});
    // Posted events are no longer shown. The end is recorded on this thread.
    application.journal()->observe([&report](const JournalEvent& event) {
        if (event.code == EventCode::programEnded) report.show(event);
    });
    return application.finish(status);
}

}  // namespace tarnik
