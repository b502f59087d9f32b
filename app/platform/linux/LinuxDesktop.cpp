#include <QDBusConnection>
#include <QGuiApplication>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/platform/AutostartEntry.h"
#include "app/platform/DesktopPlatform.h"
#include "app/platform/StoredPreferences.h"
#include "app/platform/linux/AppearanceMonitor.h"
#include "app/platform/linux/BusSingleInstance.h"
#include "app/platform/linux/DesktopNotifications.h"
#include "app/platform/linux/LinuxSwitches.h"
#include "app/platform/linux/OpenRequests.h"
#include "app/platform/linux/PortalProxies.h"
#include "app/platform/linux/SessionBus.h"
#include "app/platform/linux/SystemLogSocket.h"
#include "app/platform/linux/TrayHostMonitor.h"
#include "app/texts/ProgramTexts.h"

namespace tarnik {
namespace {

// The bundle folder of the installed package.
constexpr const char* packagedBundle = "/usr/lib/tarnik";

// The upper bound for the time from the start of the program to its first window.
constexpr std::chrono::seconds maxStartTime(4);

std::optional<std::string> activationToken(const Environment& environment) {
    for (const char* variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"})
        if (auto token = environmentValue(environment, variable); !token.empty()) return token;
    return std::nullopt;
}

// Ends the busy pointer that a desktop shows from the click on a program until its first window. Only X11
// needs this. On Wayland another instance receives the click's token, and its use ends the pointer. Qt
// notifies the desktop only when a window is shown, and has removed the click's id from the environment. So
// this function shows an unmanaged window outside the screen and closes it at once.
void endStartupNotification(const Environment& environment) {
    if (environmentValue(environment, "DESKTOP_STARTUP_ID").empty()) return;
    if (QGuiApplication::platformName() != QLatin1String("xcb")) return;
    if (std::ranges::any_of(QGuiApplication::topLevelWindows(), &QWindow::isVisible)) return;
    QWindow window;
    window.setFlags(Qt::Window | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    window.setGeometry(-2, -2, 1, 1);
    window.show();
}

SwitchOperations operationsOf(const std::shared_ptr<LinuxSwitches>& switches) {
    return {.isOn = [switches](Switch which) { return switches->isOn(which); },
            .whenKnown = [switches](auto handler) { switches->whenKnown(std::move(handler)); },
            .prompt = [switches](Switch which) { return switches->prompt(which); },
            .grantsGoStale = false,  // the switches belong to the desktop, not to a copy of the program
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

SingleInstance operationsOf(const std::shared_ptr<BusSingleInstance>& instance,
                            const Environment& environment) {
    const auto acquire = [instance, environment](const SingleInstance::LaunchRequest& request) {
        const auto outcome = instance->acquire(request);
        if (outcome == SingleInstance::Outcome::handedOver) {
            endStartupNotification(environment);
        } else {
            QTimer::singleShot(maxStartTime, qGuiApp, [environment] { endStartupNotification(environment); });
        }
        return outcome;
    };
    return {.acquire = acquire, .refuseRequests = [instance] { instance->refuseRequests(); }};
}

UserNotices operationsOf(const std::shared_ptr<DesktopNotifications>& notifications) {
    return {
        .canShow = [notifications] { return notifications->canShow(); },
        .show = [notifications](const std::string& id,
                                const UserNotice& notice) { notifications->show(id, notice); },
        .withdraw = [notifications](const std::string& id) { notifications->withdraw(id); },
        .onClick = [notifications](auto handler) { notifications->onClick(std::move(handler)); },
    };
}

// Returns an operation that registers a handler. The operation creates and owns the handler's monitor.
template <class Monitor, class Handler>
std::function<void(Handler)> registering(const QDBusConnection& bus) {
    return [bus, monitor = std::make_shared<std::unique_ptr<Monitor>>()](Handler handler) {
        *monitor = std::make_unique<Monitor>(bus, std::move(handler));
    };
}

}  // namespace

void DesktopPlatform::prepare() {
    disableBusAutolaunch();
}

// QT_QPA_PLATFORM may name a window system that needs neither display variable.
std::optional<std::string> DesktopPlatform::whyNoWindow(const Environment& environment) {
    for (const char* variable : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"})
        if (!environmentValue(environment, variable).empty()) return std::nullopt;
    return ProgramTexts::noDisplay;
}

DesktopPlatform DesktopPlatform::make(const DesktopRun& run) {
    const auto bus = QDBusConnection::sessionBus();
    const auto socket = std::make_shared<const SystemLogSocket>(SystemLogSocket::standardPath);
    const auto switches = std::make_shared<LinuxSwitches>(bus, run.environment, run.userFolder);
    const auto requests = std::make_shared<OpenRequests>(run.mainThread);
    const auto instance = std::make_shared<BusSingleInstance>(bus, requests, activationToken(run.environment),
                                                              BusSingleInstance::Timeouts());
    return {
        .installPath = packagedBundle,
        .defaults = storedPreferences(run.folders, SystemLogSocket::channel(socket, "defaults")),
        .switches = operationsOf(switches),
        .onSwitchesChanged = [switches](auto handler) { switches->onChange(std::move(handler)); },
        .log = [socket](const std::string& category) { return SystemLogSocket::channel(socket, category); },
        .loginItem = AutostartEntry(run.folders, run.environment, run.executable).operations(),
        .updates = {},  // the system's package manager installs updates
        .bundles = {},  // applications are not moved
        .events = eventsOf(requests),
        .singleInstance = operationsOf(instance, run.environment),
        .marksLoginStarts = true,
        .notices = operationsOf(std::make_shared<DesktopNotifications>(bus)),
        .proxies = portalProxies(bus),
        .activate = {},
        .onAppearanceChanged = registering<AppearanceMonitor, AppearanceMonitor::OnSettings>(bus),
        .onTrayHost = registering<TrayHostMonitor, TrayHostMonitor::OnHost>(bus)};
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the returned record owns them

}  // namespace tarnik
