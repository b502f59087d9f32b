#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/AppDelegate.h"
#include "app/console/ConsoleOutput.h"
#include "app/console/PairingTranscript.h"
#include "app/console/SimulatedSwitches.h"
#include "app/model/ChangeFeed.h"
#include "app/model/WindowContent.h"
#include "core/foundation/CallbackGuard.h"

namespace tarnik {

// The terminal face. Prints every change of the model, prints the window as text, and executes the commands
// that the user types.
//
// Owned by runConsole(), one per run. Main thread only.
class Console {
public:
    // `output` and `switches` outlive this object. `closeInput` stops reading lines.
    Console(MainThread mainThread, ConsoleOutput& output, SimulatedSwitches& switches,
            std::shared_ptr<AppModel> model, std::function<void()> closeInput);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Returns operations that must not outlive this object. `end` ends the event loop.
    Presentation presentation(std::function<void()> end);

    // Sets the delegate, which outlives the input. Call before the first line.
    void attach(AppDelegate& delegate) { delegate_ = &delegate; }

    // Pairs with the link once the helper is installed. If the link is refused, the program ends with
    // status 1.
    void pairWhenReady(std::string link) { startLink_ = std::move(link); }

    void onLine(const std::string& line);
    void onLineTooLong();

    // Quits. An install that has begun is completed first.
    void onEndOfInput();

    // Quits. A second signal ends the program at once; the helper then quits at the end of its input.
    void onSignal(int signal);

    int exitStatus() const { return exitStatus_; }

private:
    void willChange(const AppState& now, const AppState& next);
    void showSetup(const Setup& setup, bool wasInstalling);
    void showPairing(const PairingSession::Snapshot& snapshot);
    void showLink(const AppState& now, const AppState& next);
    void showWindow();
    void showNews(const AppState& state);
    void showStatus();
    void showSample();
    void showError(const std::string& text);
    void setSwitch(const std::string& words);
    void pair(const std::string& link);
    void confirm(bool isCommand);
    void cancel();
    void later(std::function<void()> task);
    void fail();
    void quit();

    const MainThread mainThread_;
    ConsoleOutput& output_;
    SimulatedSwitches& switches_;
    const std::shared_ptr<AppModel> model_;
    const std::function<void()> closeInput_;
    AppDelegate* delegate_ = nullptr;
    std::optional<std::string> startLink_;
    bool startLinkGiven_ = false;
    bool inputEnded_ = false;
    bool answeredLink_ = false;  // a message about the last link was printed
    std::string installing_;     // the installer's last line
    int restarts_ = 0;
    int driverRestarts_ = 0;
    int exitStatus_ = 0;
    PairingTranscript transcript_;
    std::string sessionID_;               // of transcript_
    std::optional<WindowContent> shown_;  // std::nullopt before the window is opened
    const ChangeFeed feed_;
    const CallbackGuard guard_;
};

}  // namespace tarnik
