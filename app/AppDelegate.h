#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/Presentation.h"
#include "app/model/AppModel.h"
#include "app/model/ChangeFeed.h"
#include "app/platform/SystemEvents.h"
#include "app/relocation/RelocationOutcome.h"
#include "app/updates/Updater.h"
#include "core/foundation/CallbackGuard.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

// The effects of AppDelegate.
struct AppDelegateDeps {
    std::optional<std::string> bundlePath;  // of this copy; std::nullopt if it runs outside a bundle
    std::string installPath{TarnikIdentity::installPath};
    std::function<void(std::function<void(RelocationOutcome)> done)> relocateIfNeeded;
    std::function<void(const std::string& reason)> recordWindow;
    std::function<void(const std::string& link)>
        handLinkOn;  // passes a link to the copy that replaces this one
    std::function<std::optional<std::string>()> takeHandedLink;
    // Locks the node home. Passes std::nullopt to `done`, or a sentence if another program uses the home.
    std::function<void(std::function<void(const std::optional<std::string>& inUse)> done)> takeNodeHome;
    std::function<void()> ensureLoginItem;  // returns at once
    std::function<std::unique_ptr<Updater>()> makeUpdater;
    std::function<void()> takesLinks;  // called when the model has started; may be empty
    bool showsWindow = false;          // show the window at launch even if the user doesn't have to act
    Seconds relocationPatience = Seconds(2);  // for the relocator, before the window is shown
    MainThread mainThread;
    Presentation presentation;
    SystemEvents events;
};

// Controls the order of launch and shutdown, opens the window when the user has to act, and receives the
// links that other programs open.
//
// Owned by Application, one per run. Main thread only. No operation waits, except for access to small files.
class AppDelegate {
public:
    AppDelegate(AppDelegateDeps deps, std::shared_ptr<AppModel> model);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    // Call before the event loop runs. A link that arrives later is kept until the model has started.
    void willFinishLaunching();

    // Call when the event loop runs. The launch continues when the relocator has reported its outcome.
    void didFinishLaunching();

    // Call when the user opens the application again while it runs.
    void reopen() { showWindow("reopen"); }

    void openWindow() { showWindow("open"); }
    void windowClosed();
    void checkForUpdates();
    bool hasUpdater() const { return updater_ && updater_->isAvailable(); }

    // Stops the updater and the model, then ends the event loop. Later calls are ignored.
    void quit();
    bool isQuitting() const { return quitting_; }

private:
    void handleURL(const std::string& link);
    void showIfRelocationWaits();
    void relocated(const RelocationOutcome& outcome);
    void refuse(const std::string& why);
    void launch(const std::optional<RelocationOutcomes::StayWithMessage>& message);
    void modelStarted();
    void connect(const JoinCode& code);
    void stateChanged(const AppState& state);
    bool isNoticed(const AppState& state) const;
    void showWindow(const std::string& reason);

    // The checks after the launch whether the user has to act. A flag is true when its check was made.
    struct AttentionChecks {
        bool afterSetup = false;
        bool afterNodeReport = false;
    };

    const AppDelegateDeps deps_;
    const std::shared_ptr<AppModel> model_;
    std::unique_ptr<Updater> updater_;               // null before launch()
    std::optional<RepeatingTimer> relocationTimer_;  // until the relocator has reported
    std::optional<JoinCode> pendingLink_;  // the last link that arrived before the model had started
    bool modelStarted_ = false;
    bool windowOpen_ = false;
    bool windowWasClosed_ = false;  // by the user, in this run
    AttentionChecks checked_;
    bool quitting_ = false;
    bool moving_ = false;  // true if this copy quits because another copy replaces it
    const ChangeFeed feed_;
    const CallbackGuard guard_;
};

}  // namespace tarnik
