#include "app/views/DesktopProgram.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include <unistd.h>

#include "app/AppDelegate.h"
#include "app/CommandLineDeps.h"
#include "app/LoginItem.h"
#include "app/NodeHomeOwner.h"
#include "app/ProcessSetup.h"
#include "app/SignalWatcher.h"
#include "app/model/UpdateSettings.h"
#include "app/platform/DesktopPlatform.h"
#include "app/relocation/Relocator.h"
#include "app/views/DesktopFace.h"
#include "app/views/PlainStyle.h"
#include "app/views/QtMainThread.h"
#include "app/views/ScreenGallery.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

constexpr int signalledStatus = 128;  // and the signal's number, as shells have it

// What Qt can't go on without ends the program with a sentence, not with a core dump. Its first warning names
// the cause; what it says at the end is for whoever builds Qt. Called on whatever thread has something to
// say.
void onToolkitMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    static std::mutex mutex;
    static std::string firstWarning;  // guarded by mutex
    const std::lock_guard lock(mutex);
    // Qt goes on without the thread that reads from the window system or the bus, and then waits for it.
    if (text.startsWith(QLatin1String("QThread::start: Thread creation error"))) exitOutOfThreads();
    if (type == QtWarningMsg && firstWarning.empty()) firstWarning = text.toStdString();
    if (type == QtCriticalMsg) printError(text.toStdString());
    if (type != QtFatalMsg) return;
    printError("the window can't be opened: " + (firstWarning.empty() ? text.toStdString() : firstWarning));
    ::_exit(EXIT_FAILURE);
}

void prepareApplication() {
    qInstallMessageHandler(onToolkitMessage);
    DesktopPlatform::prepare();
    QCoreApplication::setApplicationName(QString::fromUtf8(TarnikIdentity::appName));
    QGuiApplication::setDesktopFileName(QString::fromUtf8(TarnikIdentity::bundleIdentifier));
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

// The system asks the application to quit: it stops everything first, with its loop running, and then agrees.
class QuitRequests : public QObject {
public:
    explicit QuitRequests(AppDelegate& delegate) : delegate_(delegate) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) return false;
        if (delegate_.isQuitting()) return true;
        delegate_.quit();
        QEventLoop().exec();  // ends with the program's own
        return false;
    }

private:
    AppDelegate& delegate_;
};

// With the node folder that was chosen for this run.
UserDefaults withNodeHome(UserDefaults defaults, const std::optional<std::string>& nodeHome) {
    if (!nodeHome) return defaults;
    defaults.text = [nodeHome, others = defaults.text](const std::string& key) {
        return key == TarnikIdentity::nodeHomeDefaultsKey ? nodeHome : others(key);
    };
    return defaults;
}

using OnRelocated = std::function<void(RelocationOutcome)>;

// A launch that doesn't know the switches yet would take both for off, and show the window for nothing.
OnRelocated onceKnown(std::function<void(std::function<void()>)> whenKnown, OnRelocated done) {
    if (!whenKnown) return done;
    return [whenKnown = std::move(whenKnown), done = std::move(done)](const RelocationOutcome& outcome) {
        whenKnown([done, outcome] { done(outcome); });
    };
}

bool isPrimaryInstance(const SingleInstance& singleInstance, const SingleInstance::LaunchRequest& request) {
    if (!singleInstance.acquire) return true;
    const auto outcome = singleInstance.acquire(request);
    if (outcome == SingleInstance::Outcome::handedOver) printError("another copy is running, and goes on");
    if (outcome == SingleInstance::Outcome::unavailable)
        printError("no session bus, so links opened elsewhere don't get here");
    return outcome != SingleInstance::Outcome::handedOver;
}

// The system's, and the link that the command line has, if nobody else is to bring that: it comes once the
// loop runs, as one does that the program was opened with.
SystemEvents withLink(const DesktopPlatform& desktop, const std::optional<std::string>& link,
                      const MainThread& mainThread) {
    auto events = desktop.events;
    if (desktop.singleInstance.acquire || !link) return events;
    events.onLink = [others = events.onLink, link = *link, mainThread](const auto& handler) {
        others(handler);
        mainThread.post([handler, link] { handler(link); });
    };
    return events;
}

AppDelegateDeps delegateDeps(const CommandLine& line, const DesktopPlatform& desktop,
                             const ProgramLocation& place, const MainThread& mainThread,
                             const BackgroundTasks& work, Relocator& relocator, NodeHomeOwner& homeOwner,
                             DesktopFace& face) {
    return {
        .bundlePath = place.bundle,
        .installPath = desktop.installPath,
        .relocateIfNeeded =
            [&relocator, whenKnown = desktop.switches.whenKnown](auto done) {
                relocator.relocateIfNeeded(onceKnown(whenKnown, std::move(done)));
            },
        .recordWindow = [&relocator](const std::string& reason) { relocator.recordWindow(reason); },
        .handLinkOn = [&relocator](const std::string& link) { relocator.handLinkOn(link); },
        .takeHandedLink = [&relocator] { return relocator.takeHandedLink(); },
        .takeNodeHome = [&homeOwner](auto done) { homeOwner.take(std::move(done)); },
        .ensureLoginItem =
            [work, service = desktop.loginItem] {
                work.start("tarnik.login-item", [service] { LoginItem::ensureRegistered(service); });
            },
        .makeUpdater =
            [bundle = place.bundle, framework = desktop.updates, mainThread, log = desktop.log("updater")] {
                const auto settings = bundle ? UpdateSettings::fromBundle(*bundle) : UpdateSettings{};
                return std::make_unique<Updater>(
                    settings, Updater::Deps{.framework = framework, .mainThread = mainThread, .log = log});
            },
        .showsWindow = desktop.marksLoginStarts && !line.atLogin,
        .mainThread = mainThread,
        .presentation = face.presentation(),
        .events = withLink(desktop, line.link, mainThread)};
}

// To what the desktop tells for the rest of the run, and what it is to be told.
void listen(const DesktopPlatform& desktop, DesktopFace& face, const std::shared_ptr<AppModel>& model) {
    model->observe(
        [refuse = desktop.singleInstance.refuseRequests](const AppState& now, const AppState& next) {
            if (refuse && next.stopping && !now.stopping) refuse();
        });
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
            applyPlainStyle(isDark ? Appearance::dark : Appearance::light, choice.options);
        });
    }
}

}  // namespace

int runDesktop(const CommandLine& line, Machine machine, const ProgramLocation& place, char* name) {
    if (const auto why = DesktopPlatform::whyNoWindow(machine.inherited)) {
        printError(*why);
        return EXIT_FAILURE;
    }
    const QtMainThread loop;
    const auto mainThread = loop.operations();
    std::atomic<bool> launched = false;
    std::function<void()> onSignal;
    const SignalWatcher signalWatcher([&](int signal) {
        if (!launched) ::_exit(signalledStatus + signal);  // there is nothing to stop yet
        mainThread.post([&onSignal] { onSignal(); });
    });
    prepareApplication();
    int argc = 1;
    char* argv[] = {name, nullptr};
    const QApplication application(argc, argv);
    const auto desktop = DesktopPlatform::make({.folders = place.folders,
                                                .environment = machine.inherited,
                                                .userFolder = machine.userFolder,
                                                .executable = place.executable,
                                                .bundle = place.bundle,
                                                .mainThread = mainThread});
    if (!isPrimaryInstance(desktop.singleInstance, {.link = line.link, .wantsWindow = !line.atLogin}))
        return EXIT_SUCCESS;

    const BackgroundTasks work;
    const auto log = desktop.log("app");
    std::function<bool()> windowInUse;
    const auto model = AppModel::make(std::move(machine),
                                      modelDeps(line,
                                                {.mainThread = mainThread,
                                                 .defaults = withNodeHome(desktop.defaults, line.nodeHome),
                                                 .switches = desktop.switches,
                                                 .log = log,
                                                 .windowInUse = [&] { return windowInUse(); }},
                                                work));
    DesktopFace face({.mainThread = mainThread,
                      .activate = desktop.activate,
                      .statusImage = desktop.statusImage,
                      .nameStatusItem = desktop.nameStatusItem,
                      .end = [](int exitStatus) { QCoreApplication::exit(exitStatus); },
                      .atLogin = line.atLogin},
                     model);
    windowInUse = [&face] { return face.windowInUse(); };
    NodeHomeOwner homeOwner(model->home(), {.mainThread = mainThread,
                                            .log = log,
                                            .applicationSupport = place.folders.applicationSupport,
                                            .face = NodeHomeOwner::Face::window});
    Relocator relocator(
        RelocatorDeps::production(desktop.bundles, mainThread, place.folders.applicationSupport));
    AppDelegate delegate(delegateDeps(line, desktop, place, mainThread, work, relocator, homeOwner, face),
                         model);
    face.attach(delegate);
    listen(desktop, face, model);
    const QuitRequests quitRequests(delegate);
    onSignal = [&delegate] {
        // Asked once more, it doesn't wait; the helper then notices the end of its input.
        if (delegate.isQuitting()) ::_exit(EXIT_FAILURE);
        delegate.quit();
    };
    launched = true;
    delegate.willFinishLaunching();
    mainThread.post([&delegate] { delegate.didFinishLaunching(); });
    const int status = QApplication::exec();
    // A transfer that goes on leaves nothing behind that matters, and nobody should wait for it.
    if (!work.isIdle()) ::_exit(status);
    return status;
}

int runScreens(const CommandLine& line, char* name) {
    const bool writes = line.task == CommandLine::Task::writeScreens;
    if (writes) ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    prepareApplication();
    QGuiApplication::setQuitOnLastWindowClosed(true);
    int argc = 1;
    char* argv[] = {name, nullptr};
    const QApplication application(argc, argv);
    applyPlainStyle(Appearance::light);
    const ScreenGallery gallery{.webOrigin = BuildSettings::fromPropertyList({}).webOrigin};
    if (writes) return gallery.writeScreens(line.screen);
    return gallery.showScreen(line.screen, line.dark ? Appearance::dark : Appearance::light);
}

}  // namespace tarnik
