#include <QDBusConnection>
#include <QGuiApplication>
#include <QTimer>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/platform/DesktopPlatform.h"
#include "app/platform/linux/AppearanceMonitor.h"
#include "app/platform/linux/AutostartEntry.h"
#include "app/platform/linux/BusSingleInstance.h"
#include "app/platform/linux/DefaultsFile.h"
#include "app/platform/linux/LinuxSwitches.h"
#include "app/platform/linux/OpenRequests.h"
#include "app/platform/linux/SessionBusAddress.h"
#include "app/platform/linux/StartupNotification.h"
#include "app/platform/linux/SystemLogSocket.h"
#include "app/platform/linux/TrayHostMonitor.h"

namespace tarnik {
namespace {

// Where the package puts the bundle.
constexpr const char* packagedBundle = "/usr/lib/tarnik";

// A window that a start brings up is there by then.
constexpr std::chrono::seconds longestStart(4);

std::optional<std::string> activationToken(const Environment& environment) {
    for (const char* variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        const std::string value = environmentValue(environment, variable);
        if (!value.empty()) return value;
    }
    return std::nullopt;
}

SwitchOperations operationsOf(const std::shared_ptr<LinuxSwitches>& switches) {
    return {.isOn = [switches](Switch which) { return switches->isOn(which); },
            .whenKnown = [switches](auto handler) { switches->whenKnown(std::move(handler)); },
            .prompt = [switches](Switch which) { return switches->prompt(which); },
            .grantsGoStale = false,  // what counts here is the desktop's own switch
            .openSettings = [switches](Switch which) { switches->openSettings(which); }};
}

void onBecameActive(std::function<void()> handler) {
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, qGuiApp,
                     [handler = std::move(handler)](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive) handler();
                     });
}

SystemEvents eventsOf(const std::shared_ptr<OpenRequests>& requests) {
    return {.onLink = [requests](auto handler) { requests->onLink(std::move(handler)); },
            .onSecondOpen = [requests](auto handler) { requests->onSecondOpen(std::move(handler)); },
            .onBecameActive = onBecameActive};
}

SingleInstance operationsOf(const std::shared_ptr<BusSingleInstance>& copy, const Environment& environment) {
    const auto acquire = [copy, environment](const SingleInstance::LaunchRequest& request) {
        const auto outcome = copy->acquire(request);
        if (outcome == SingleInstance::Outcome::handedOver) {
            endStartupNotification(environment);
        } else {
            QTimer::singleShot(longestStart, qGuiApp, [environment] { endStartupNotification(environment); });
        }
        return outcome;
    };
    return {.acquire = acquire, .refuseRequests = [copy] { copy->refuseRequests(); }};
}

// A reading that begins with its handler, and lasts as long as the operation.
template <class Reading, class Handler>
std::function<void(Handler)> startingWithHandler(const QDBusConnection& bus) {
    return [bus, reading = std::make_shared<std::unique_ptr<Reading>>()](Handler handler) {
        *reading = std::make_unique<Reading>(bus, std::move(handler));
    };
}

}  // namespace

void DesktopPlatform::prepare() {
    disableBusAutolaunch();
}

// QT_QPA_PLATFORM may name a window system that needs neither.
std::optional<std::string> DesktopPlatform::whyNoWindow(const Environment& environment) {
    for (const char* variable : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!environmentValue(environment, variable).empty()) return std::nullopt;
    }
    return "there is no display; --console runs in the terminal";
}

DesktopPlatform DesktopPlatform::make(const DesktopRun& run) {
    const auto bus = QDBusConnection::sessionBus();
    const auto socket = std::make_shared<const SystemLogSocket>(SystemLogSocket::standardPath);
    const auto switches = std::make_shared<LinuxSwitches>(bus, run.environment, run.userFolder);
    const auto requests = std::make_shared<OpenRequests>(run.mainThread);
    const auto copy = std::make_shared<BusSingleInstance>(bus, requests, activationToken(run.environment),
                                                          BusSingleInstance::Bounds());
    return {
        .installPath = packagedBundle,
        .defaults = DefaultsFile::operations(run.folders.preferences + "/tarnik/defaults.json",
                                             SystemLogSocket::channel(socket, "defaults")),
        .switches = operationsOf(switches),
        .onSwitchesChanged = [switches](auto handler) { switches->onChange(std::move(handler)); },
        .log = [socket](const std::string& category) { return SystemLogSocket::channel(socket, category); },
        .loginItem = AutostartEntry(run.folders, run.executable).operations(),
        .updates = {},  // there is no update framework: the package's system updates it
        .bundles = {},  // nor are applications moved
        .events = eventsOf(requests),
        .singleInstance = operationsOf(copy, run.environment),
        .marksLoginStarts = true,
        .activate = {},
        .onAppearanceChanged = startingWithHandler<AppearanceMonitor, AppearanceMonitor::OnChoice>(bus),
        .onTrayHost = startingWithHandler<TrayHostMonitor, TrayHostMonitor::OnHost>(bus)};
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the record owns its operations

}  // namespace tarnik
