#include "app/desktop/DesktopProgram.h"

#include <QApplication>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include <unistd.h>

#include "app/Application.h"
#include "app/ProcessSetup.h"
#include "app/SignalWatcher.h"
#include "app/commands/Front.h"
#include "app/desktop/OpenedLinks.h"
#include "app/desktop/QuitRequests.h"
#include "app/desktop/WindowLanguage.h"
#include "app/model/ProgramActivity.h"
#include "app/model/SampleScreens.h"
#include "app/platform/DesktopPlatform.h"
#include "app/texts/ProgramTexts.h"
#include "app/views/DesktopFace.h"
#include "app/views/PlainStyle.h"
#include "app/views/QtMainThread.h"
#include "app/views/ScreenGallery.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

constexpr int signalledStatus = 128;  // plus the number of the signal, as in shells

// Prints Qt's critical errors. At a fatal error, prints Qt's first warning and exits without a core dump. The
// warning names the cause; the fatal message is for developers of Qt. Called on any thread.
void onToolkitMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    static std::mutex mutex;
    static std::string firstWarning;  // guarded by mutex
    const std::lock_guard lock(mutex);
    // Qt continues without its thread for the window system or the bus, and then waits forever.
    if (text.startsWith(QLatin1String("QThread::start: Thread creation error"))) exitOutOfThreads();
    if (type == QtWarningMsg && firstWarning.empty()) firstWarning = text.toStdString();
    if (type == QtCriticalMsg) printError(text.toStdString());
    if (type != QtFatalMsg) return;
    printError(ProgramTexts::cantOpenWindow + (firstWarning.empty() ? text.toStdString() : firstWarning));
    ::_exit(EXIT_FAILURE);
}

void prepareApplication() {
    qInstallMessageHandler(onToolkitMessage);
    DesktopPlatform::prepare();
    QCoreApplication::setApplicationName(QString::fromUtf8(TarnikIdentity::appName));
    QGuiApplication::setDesktopFileName(QString::fromUtf8(TarnikIdentity::bundleIdentifier));
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

// Returns false if another instance took the request. Prints a message unless the outcome is `primary`.
bool isPrimaryInstance(const SingleInstance& singleInstance, const SingleInstance::LaunchRequest& request) {
    if (!singleInstance.acquire) return true;
    const auto outcome = singleInstance.acquire(request);
    if (outcome == SingleInstance::Outcome::handedOver) printError(ProgramTexts::handedOver);
    if (outcome == SingleInstance::Outcome::unavailable) printError(ProgramTexts::noSessionBus);
    return outcome != SingleInstance::Outcome::handedOver;
}

// Returns the system's events. Adds the links that the toolkit reports, and the link of the command line
// unless SingleInstance delivers it. The handler receives that link after the event loop has started.
SystemEvents withLinks(const DesktopPlatform& desktop, OpenedLinks& opened, std::optional<std::string> link,
                       const MainThread& mainThread) {
    auto events = desktop.events;
    if (desktop.singleInstance.acquire) link.reset();
    events.onLink = [others = events.onLink, &opened, link, mainThread](const auto& handler) {
        others(handler);
        opened.setHandler(handler);
        if (link) mainThread.post([handler, link = *link] { handler(link); });
    };
    return events;
}

StatusItemDeps statusItemOf(const DesktopPlatform& desktop) {
    return {.image = desktop.statusImage, .isInMenuBar = desktop.hasMenuBar, .make = desktop.makeStatusItem};
}

QuitRequests::Deps quittingOf(AppDelegate& delegate) {
    return {.isQuitting = [&delegate] { return delegate.isQuitting(); },
            .quit = [&delegate] { delegate.quit(); }};
}

// Connects the platform's notifications to the face and the model for the rest of the run.
void connectPlatform(const DesktopPlatform& desktop, DesktopFace& face,
                     const std::shared_ptr<AppModel>& model) {
    model->observe(
        [refuse = desktop.singleInstance.refuseRequests](const AppState& now, const AppState& next) {
            if (refuse && next.stopping && !now.stopping) refuse();
        });
    if (desktop.setActivity) {
        desktop.setActivity(activityOf(model->state()));
        model->observe([set = desktop.setActivity](const AppState& now, const AppState& next) {
            if (activityOf(now) != activityOf(next)) set(activityOf(next));
        });
    }
    if (desktop.onSwitchesChanged) {
        desktop.onSwitchesChanged([weak = std::weak_ptr(model)] {
            if (const auto strong = weak.lock()) strong->refreshSwitches();
        });
    }
    if (desktop.onTrayHost) {
        desktop.onTrayHost([&face](TrayHost host) { face.setTrayHost(host); });
    } else {
        face.setTrayHost(TrayHost::present);
    }
    if (desktop.onAppearanceChanged) {
        applyPlainStyle(Appearance::light);
        desktop.onAppearanceChanged([](const AppearanceSettings& choice) {
            const bool isDark = choice.scheme == ColourScheme::dark;
            applyPlainStyle(isDark ? Appearance::dark : Appearance::light, choice.options, choice.motion);
        });
    }
}

}  // namespace

int runDesktop(const CommandLine& line, HostEnvironment host, const ProgramLocation& place, char* name) {
    if (const auto why = DesktopPlatform::whyNoWindow(host.inherited)) {
        printError(*why);
        return EXIT_FAILURE;
    }
    const QtMainThread loop;
    const auto mainThread = loop.operations();
    std::atomic<bool> launched = false;
    std::function<void()> onSignal;
    const SignalWatcher signalWatch([&](int signal) {
        if (!launched) ::_exit(signalledStatus + signal);  // no child runs yet
        mainThread.post([&onSignal] { onSignal(); });
    });
    prepareApplication();
    int argc = 1;
    char* argv[] = {name, nullptr};
    const QApplication qtApplication(argc, argv);
    if (!setWindowLanguage(line.language)) return refuseStart(ProgramTexts::noSuchLanguage);
    const auto desktop = DesktopPlatform::make({.folders = place.folders,
                                                .environment = host.inherited,
                                                .userFolder = host.userFolder,
                                                .executable = place.executable,
                                                .bundle = place.bundle,
                                                .mainThread = mainThread});
    if (!isPrimaryInstance(desktop.singleInstance, {.link = line.link, .wantsWindow = !line.atLogin}))
        return EXIT_SUCCESS;

    if (desktop.proxies) host.proxies.desktop = desktop.proxies;
    OpenedLinks openedLinks;
    std::function<bool()> windowInUse;
    Application application(line, std::move(host), place,
                            {.model = {.mainThread = mainThread,
                                       .defaults = desktop.defaults,
                                       .switches = desktop.switches,
                                       .loginItem = desktop.loginItem,
                                       .log = desktop.log("app"),
                                       .windowInUse = [&] { return windowInUse(); }},
                             .installPath = desktop.installPath,
                             .bundles = desktop.bundles,
                             .updates = desktop.updates,
                             .updaterLog = desktop.log("updater"),
                             .events = withLinks(desktop, openedLinks, line.link, mainThread)});
    DesktopFace face(
        {.mainThread = mainThread,
         .activate = desktop.activate,
         .statusItem = statusItemOf(desktop),
         .end = [](int exitStatus) { QCoreApplication::exit(exitStatus); },
         .atLogin = line.atLogin,
         .defaults = desktop.defaults,
         .notices = desktop.notices,
         .absence = HelperAbsence::Limits::after(line.awayAfter),
         .support = {.makeReport = [&application](const auto& done) { application.makeReport(done); },
                     .log = application.model()->host().nodeLog,
                     .open = SupportActions::desktopOpener()}},
        application.model());
    windowInUse = [&face] { return face.windowInUse(); };
    AppDelegate& delegate = application.attach(
        {.presentation = face.presentation(), .showsWindow = desktop.marksLoginStarts && !line.atLogin});
    face.attach(delegate);
    connectPlatform(desktop, face, application.model());
    const QuitRequests quitRequests(quittingOf(delegate));
    onSignal = [&delegate] {
        // A second signal ends the program at once. The helper then exits, because its input closes.
        if (delegate.isQuitting()) ::_exit(EXIT_FAILURE);
        delegate.quit();
    };
    launched = true;
    application.launch();
    return application.finish(QApplication::exec());
}

namespace {

int listScreens() {
    for (const auto& screen : sampleScreens()) std::puts(std::string(screen.name).c_str());
    return EXIT_SUCCESS;
}

// Shows one state of the window, or writes a picture of each state into a folder.
int runScreens(const CommandLine& line, char* name) {
    const bool writes = line.task == CommandLine::Task::writeScreens;
    if (writes) ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    prepareApplication();
    QGuiApplication::setQuitOnLastWindowClosed(true);
    int argc = 1;
    char* argv[] = {name, nullptr};
    const QApplication qtApplication(argc, argv);
    if (!setWindowLanguage(line.language)) return refuseStart(ProgramTexts::noSuchLanguage);
    applyPlainStyle(Appearance::light);
    const ScreenGallery gallery{.webOrigin = BuildSettings::defaults().webOrigin};
    if (writes) return gallery.writeScreens(line.screen);
    return gallery.showScreen(line.screen, line.dark ? Appearance::dark : Appearance::light);
}

}  // namespace

int runWindowPart(char** argv) {
    using Task = CommandLine::Task;
    const auto line = CommandLine::parse(wordsOf(argv), CommandLine::thisBuild());
    if (!line) return refuseStart(line.error());
    switch (line->task) {
        case Task::openWindow:
            return runProgram(*line, argv[0],
                              [name = argv[0]](const auto& asked, HostEnvironment host, const auto& place) {
                                  return runDesktop(asked, std::move(host), place, name);
                              });
        case Task::listScreens: return listScreens();
        case Task::showScreen:
        case Task::writeScreens: return runScreens(*line, argv[0]);
        case Task::runConsole:
        case Task::showHelp:
        case Task::showDeveloperHelp:
        case Task::showVersion: return refuseStart(ProgramTexts::startTheFront);
    }
    return EXIT_FAILURE;
}

}  // namespace tarnik
