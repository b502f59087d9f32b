#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/AppDelegate.h"
#include "app/console/ConsoleReport.h"
#include "app/console/SimulatedSwitches.h"
#include "core/foundation/CallbackGuard.h"

namespace tarnik {

// The terminal face. Executes the commands that the user types; its ConsoleReport prints what happens.
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

    // Sets the delegate. Call before the first line. The delegate exists as long as lines can arrive.
    void attach(AppDelegate& delegate) { delegate_ = &delegate; }

    // Pairs with the link once the helper is installed. If the link is refused, the program ends with
    // status 1.
    void pairWhenReady(std::string link) { startLink_.link = std::move(link); }

    void onLine(const std::string& line);
    void onLineTooLong();

    // Quits. During an install, quits when the install has ended.
    void onEndOfInput();

    // Quits. A second signal ends the program at once. The helper then quits, because its input closes.
    void onSignal(int signal);

    int exitStatus() const { return exitStatus_; }

private:
    void willChange(const AppState& now, const AppState& next);
    void setupEnded();
    void setSwitch(const std::string& words);
    void pair(const std::string& link);
    void confirm(bool isCommand);
    void cancel();
    void later(std::function<void()> task);
    void fail();
    void quit();

    // The link of the command line.
    struct StartLink {
        std::optional<std::string> link;
        bool isGiven = false;  // true until the model has accepted or refused the link
    };

    const MainThread mainThread_;
    SimulatedSwitches& switches_;
    const std::shared_ptr<AppModel> model_;
    const std::function<void()> closeInput_;
    AppDelegate* delegate_ = nullptr;
    StartLink startLink_;
    bool inputEnded_ = false;
    int exitStatus_ = 0;
    ConsoleReport report_;
    const CallbackGuard guard_;
};

}  // namespace tarnik
