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

namespace tarnik {

// The terminal face: shows every change of the model line by line, the window as text, and passes on what the
// person types.
//
// Owned by the console program, one per run. Main thread only.
class Console {
public:
    // `output` and `switches` outlive this. `readsNoMore` stops the input.
    Console(MainThread mainThread, ConsoleOutput& output, SimulatedSwitches& switches,
            std::shared_ptr<AppModel> model, std::function<void()> readsNoMore);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // What the shell shows; its operations hold `this`. `end` ends the program's loop.
    Presentation presentation(std::function<void()> end);

    // Whom to ask for what isn't the model's; before the first line comes. It outlives the lines.
    void attach(AppDelegate& delegate) { delegate_ = &delegate; }

    // Pairs with the link once the helper is there; a refusal then ends the program with status 1.
    void pairWhenReady(std::string link) { startLink_ = std::move(link); }

    void onLine(const std::string& line);
    void onLineTooLong();

    // Quits, but lets an install that has begun come to its end first.
    void onEndOfInput();

    // Ends everything. Asked by a signal once more, ends the program at once; the helper then notices the end
    // of its input.
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
    void confirm(bool askedInWords);
    void cancel();
    void later(std::function<void()> task);
    void fail();
    void quit();

    const MainThread mainThread_;
    ConsoleOutput& output_;
    SimulatedSwitches& switches_;
    const std::shared_ptr<AppModel> model_;
    const std::function<void()> readsNoMore_;
    AppDelegate* delegate_ = nullptr;
    std::optional<std::string> startLink_;
    bool startLinkGiven_ = false;
    bool inputEnded_ = false;
    bool toldOfLink_ = false;  // since the last link was passed on
    std::string installing_;   // the installer's last line
    int restarts_ = 0;
    int driverRestarts_ = 0;
    int exitStatus_ = 0;
    PairingTranscript transcript_;
    std::string sessionID_;               // of the transcript
    std::optional<WindowContent> shown_;  // none while there is no window
    const ChangeFeed feed_;
    const std::shared_ptr<Console*> self_ = std::make_shared<Console*>(this);  // for what is done later
};

}  // namespace tarnik
