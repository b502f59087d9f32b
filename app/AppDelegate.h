#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/model/AppModel.h"
#include "app/model/ChangeFeed.h"
#include "app/platform/LoginItemService.h"
#include "app/platform/Presentation.h"
#include "app/platform/SystemEvents.h"
#include "app/relocation/RelocationOutcome.h"
#include "app/updates/Updater.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

// Everything AppDelegate asks of the outside.
struct AppDelegateDeps {
    std::optional<std::string> bundlePath;  // of the copy that runs
    std::string installPath{TarnikIdentity::installPath};
    std::function<void(std::function<void(RelocationOutcome)> done)> relocateIfNeeded;
    std::function<void(const std::string& reason)> recordWindow;
    std::function<void(const std::string& link)> handLinkOn;  // to the copy that takes over
    std::function<std::optional<std::string>()> takeHandedLink;
    // Answers with a sentence if another program keeps the node home.
    std::function<void(std::function<void(const std::optional<std::string>& inUse)> done)> takeNodeHome;
    std::function<void()> ensureLoginItem;  // returns at once
    std::function<std::unique_ptr<Updater>()> makeUpdater;
    std::function<void()> takesLinks;  // called once the model does
    bool showsWindow = false;          // whether anybody has to act or not
    MainThread mainThread;
    Presentation presentation;
    SystemEvents events;
};

// Starts the application in order, shows the window when there is reason to, takes links that were opened
// elsewhere, and ends everything in order.
//
// Owned by main(), one per run. Main thread only; nothing here blocks.
class AppDelegate {
public:
    AppDelegate(AppDelegateDeps deps, std::shared_ptr<AppModel> model);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    // Before the program's loop runs: from here on no link is lost.
    void willFinishLaunching();

    // Once the loop runs. The rest of the launch follows when the relocator has answered.
    void didFinishLaunching();

    // The person opened the application while it runs.
    void reopen() { showWindow("reopen"); }

    void openWindow() { showWindow("open"); }
    void windowClosed();
    void checkForUpdates();

    // Ends the updater and the model, and then the program's loop. Asked again, it goes on with that.
    void quit();
    bool isQuitting() const { return quitting_; }

private:
    void handleURL(const std::string& link);
    void relocated(const RelocationOutcome& outcome);
    void refuse(const std::string& why);
    void launch(const std::optional<RelocationOutcomes::StayWithMessage>& message);
    void modelStarted();
    void connect(const std::string& link);
    void askAgain(const AppState& state);
    void showWindow(const std::string& reason);

    const AppDelegateDeps deps_;
    const std::shared_ptr<AppModel> model_;
    std::unique_ptr<Updater> updater_;        // none until launch has come to it
    std::optional<std::string> pendingLink_;  // came before the model took links
    bool linkCame_ = false;
    bool modelStarted_ = false;
    bool windowOpen_ = false;
    bool askedAfterSetup_ = false;
    bool askedAfterReport_ = false;
    bool quitting_ = false;
    const ChangeFeed feed_;
    // Lets handlers and answers see whether we are there still.
    const std::shared_ptr<AppDelegate*> self_ = std::make_shared<AppDelegate*>(this);
};

}  // namespace tarnik
