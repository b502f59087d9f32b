#include "app/views/DesktopFace.h"

#include <QGuiApplication>
#include <chrono>
#include <utility>

#include "app/ProgramStart.h"
#include "app/model/WindowContent.h"
#include "app/texts/WindowTexts.h"
#include "app/views/Alert.h"
#include "core/foundation/LocalDay.h"

namespace tarnik {
namespace {

// The time limit for the tray's start in a new session and for its restart.
constexpr Seconds maxTrayWait(20);

}  // namespace

DesktopFace::DesktopFace(Deps deps, std::shared_ptr<AppModel> model)
    : deps_(std::move(deps)),
      model_(std::move(model)),
      attention_({.mainThread = deps_.mainThread,
                  .notices = deps_.notices,
                  .defaults = deps_.defaults,
                  .limits = deps_.absence,
                  .state = [this]() -> const AppState& { return model_->state(); },
                  .windowIsOpen = [this] { return windowIsOpen(); },
                  .windowIsInUse = [this] { return windowInUse(); },
                  .onStatus = [this](TrayStatus) { updateIcon(); }}),
      feed_(model_, deps_.mainThread, [this](const AppState&) {
          attention_.stateChanged();
          updateContent();
      }) {}

DesktopFace::~DesktopFace() = default;

Presentation DesktopFace::presentation() {
    return {.makeStatusItem =
                [this](const MenuContent& menu) {
                    menu_ = menu;
                    addMenuKeys();
                    updateStatusItem();
                },
            .showWindow = [this] { showWindow(); },
            .showAlert =
                [this](const std::string& title, const std::string& text) {
                    if (deps_.activate) deps_.activate();
                    showAlert(title, text);
                },
            .fillLinkField = [this](const std::string& link) { window().fillLinkField(link); },
            .refuse = [this](const std::string& why,
                             std::function<void()> seen) { refuse(why, std::move(seen)); },
            .showsNotices = [this] { return attention_.showsNotices(); },
            .end = deps_.end};
}

void DesktopFace::attach(AppDelegate& delegate) {
    delegate_ = &delegate;
    if (deps_.notices.onClick) deps_.notices.onClick([this] { delegate_->openWindow(); });
}

void DesktopFace::setTrayHost(TrayHost host) {
    host_ = host;
    updateStatusItem();
    updateContent();
}

void DesktopFace::updateStatusItem() {
    if (!menu_ || !host_) return;
    if (*host_ == TrayHost::absent) {
        // Waits if the tray may still start in a new session, or was present and is probably restarted.
        if (!timers_.withoutTray)
            openWindowWithoutTray(statusItem_ || deps_.atLogin ? maxTrayWait : Seconds(0));
        return;
    }
    timers_.withoutTray.reset();
    if (statusItem_) return;
    statusItem_ = std::make_unique<StatusItem>(deps_.statusItem, attention_.status(), *menu_,
                                               [this](MenuContent::Action action) { perform(action); });
}

void DesktopFace::updateIcon() const {
    if (statusItem_) statusItem_->setStatus(attention_.status());
}

void DesktopFace::openWindowWithoutTray(Seconds after) {
    timers_.withoutTray = deps_.mainThread.repeat(after, [this] {
        timers_.withoutTray.reset();
        delegate_->openWindow();
    });
}

bool DesktopFace::windowIsOpen() const {
    return window_ && window_->isVisible() && !window_->isMinimized();
}

void DesktopFace::windowSeen() {
    attention_.windowSeen();
    updateContent();  // the machine may have slept over midnight
}

MainWindow& DesktopFace::window() {
    if (!window_) {
        const auto support = std::make_shared<SupportActions>(deps_.support);
        window_ = std::make_unique<MainWindow>(
            content(), [this, support](const UserIntent& intent, const std::string& pasted) {
                if (!support->perform(intent, *window_)) performIntent(intent, pasted, *model_);
            });
        window_->setOnClose(
            {.closed = [this] { windowClosed(); },
             .stays = [this] { return closing() == WindowSetting::Closing::endsConnection; }});
        window_->setOnSeen([this] { windowSeen(); });
        addMenuKeys();
    }
    return *window_;
}

void DesktopFace::showWindow() {
    if (deps_.activate) deps_.activate();
    window().setContent(content());
    window().present();
    attention_.windowSeen();
    updateContentAtMidnight();
}

// The content has times of day, which are ambiguous on the next day.
void DesktopFace::updateContentAtMidnight() {
    const auto now = std::chrono::system_clock::now();
    timers_.midnight = deps_.mainThread.repeat(nextDay(now) - now, [this] {
        updateContent();
        updateContentAtMidnight();
    });
}

// A start at login ends without an alert, because the user did not request that start.
void DesktopFace::refuse(const std::string& why, std::function<void()> seen) const {
    printError(why);
    if (deps_.atLogin) return seen();
    if (deps_.activate) deps_.activate();
    showAlert(std::string(WindowTexts::alreadyRunning), why, std::move(seen));
}

// A link may open the window before the menu exists.
void DesktopFace::addMenuKeys() {
    if (window_ && menu_)
        window_->setMenuKeys(*menu_, [this](MenuContent::Action action) { perform(action); });
}

void DesktopFace::perform(MenuContent::Action action) {
    switch (action) {
        case MenuContent::Action::openWindow: return delegate_->openWindow();
        case MenuContent::Action::checkForUpdates: return delegate_->checkForUpdates();
        case MenuContent::Action::quit: return delegate_->quit();
    }
}

// Without a status item the user could not reopen the window, so closing the window quits. The window stays
// visible and shows the progress of the shutdown.
void DesktopFace::windowClosed() {
    if (closing() == WindowSetting::Closing::endsConnection) return delegate_->quit();
    timers_.midnight.reset();
    attention_.windowClosed(closing());
    delegate_->windowClosed();
}

bool DesktopFace::windowInUse() const {
    return QGuiApplication::applicationState() == Qt::ApplicationActive && QGuiApplication::focusWindow();
}

// While the state of the tray is unknown, the window promises nothing and closing it ends nothing. If the
// tray is then absent, the window opens again.
WindowSetting::Closing DesktopFace::closing() const {
    using enum WindowSetting::Closing;
    if (!host_) return unknown;
    if (*host_ == TrayHost::absent) return endsConnection;
    return deps_.statusItem.isInMenuBar ? staysInMenuBar : staysInPanel;
}

WindowContent DesktopFace::content() const {
    return WindowContent::of(model_->state(), {.webOrigin = model_->webOrigin(), .closing = closing()});
}

void DesktopFace::updateContent() {
    if (window_ && window_->isVisible()) window_->setContent(content());
}

}  // namespace tarnik
