#include "app/views/DesktopFace.h"

#include <QGuiApplication>
#include <utility>

#include "app/ProgramStart.h"
#include "app/model/IntentHandling.h"
#include "app/model/WindowContent.h"
#include "app/model/WindowTexts.h"
#include "app/views/Alert.h"
#include "app/views/SymbolIcon.h"

namespace tarnik {
namespace {

// How long a session that just began may take to get its tray up.
constexpr Seconds longestTrayWait(20);

}  // namespace

DesktopFace::DesktopFace(Deps deps, std::shared_ptr<AppModel> model)
    : deps_(std::move(deps)),
      model_(std::move(model)),
      feed_(model_, deps_.mainThread, [this](const AppState&) {
          if (window_ && window_->isVisible()) window_->setContent(content());
      }) {}

DesktopFace::~DesktopFace() = default;

Presentation DesktopFace::presentation() {
    return {.makeStatusItem =
                [this](const MenuContent& menu) {
                    menu_ = menu;
                    addMenuKeys();
                    settleTray();
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
            .end = deps_.end};
}

void DesktopFace::setTrayHost(TrayHost host) {
    host_ = host;
    settleTray();
}

void DesktopFace::settleTray() {
    if (!menu_ || !host_) return;
    if (*host_ == TrayHost::absent) {
        // One that goes away most often comes back: its program was started anew.
        if (!trayWait_) waitForTray(statusItem_ || deps_.atLogin ? longestTrayWait : Seconds(0));
        return;
    }
    trayWait_.reset();
    if (statusItem_) return;
    statusItem_ =
        std::make_unique<StatusItem>(deps_.statusImage ? maskIcon(*deps_.statusImage) : markIcon(), *menu_,
                                     [this](MenuContent::Action action) { choose(action); });
    if (deps_.nameStatusItem) deps_.nameStatusItem(WindowTexts::product);
}

void DesktopFace::waitForTray(Seconds atMost) {
    trayWait_ = deps_.mainThread.repeat(atMost, [this] {
        trayWait_.reset();
        delegate_->openWindow();
    });
}

MainWindow& DesktopFace::window() {
    if (!window_) {
        window_ = std::make_unique<MainWindow>(
            content(), [model = model_](const WindowIntent& intent, const std::string& pasted) {
                performIntent(intent, pasted, *model);
            });
        window_->setOnClose(
            {.closed = [this] { closeRequested(); }, .stays = [this] { return closingQuits(); }});
        addMenuKeys();
    }
    return *window_;
}

void DesktopFace::showWindow() {
    if (deps_.activate) deps_.activate();
    window().setContent(content());
    window().present();
}

// Nobody asked for a program that the session starts: it goes without an alert.
void DesktopFace::refuse(const std::string& why, std::function<void()> seen) const {
    printError(why);
    if (deps_.atLogin) return seen();
    if (deps_.activate) deps_.activate();
    showAlert(std::string(WindowTexts::alreadyRunning), why, std::move(seen));
}

// A link may open the window before there is a menu.
void DesktopFace::addMenuKeys() {
    if (window_ && menu_)
        window_->setMenuKeys(*menu_, [this](MenuContent::Action action) { choose(action); });
}

void DesktopFace::choose(MenuContent::Action action) {
    switch (action) {
        case MenuContent::Action::openWindow: return delegate_->openWindow();
        case MenuContent::Action::checkForUpdates: return delegate_->checkForUpdates();
        case MenuContent::Action::quit: return delegate_->quit();
    }
}

// Without a status item nobody could get the window back: closing it is quitting, and it shows how that goes
// on.
void DesktopFace::closeRequested() {
    if (closingQuits()) return delegate_->quit();
    delegate_->windowClosed();
}

bool DesktopFace::windowInUse() const {
    return QGuiApplication::applicationState() == Qt::ApplicationActive && QGuiApplication::focusWindow();
}

WindowContent DesktopFace::content() const {
    return WindowContent::of(model_->state(), model_->webOrigin());
}

}  // namespace tarnik
