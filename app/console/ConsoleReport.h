#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/console/ConsoleOutput.h"
#include "app/console/PairingTranscript.h"
#include "app/model/AppModel.h"
#include "app/model/ChangeFeed.h"
#include "app/model/WindowContent.h"
#include "core/foundation/CallbackGuard.h"

namespace tarnik {

// The output of the terminal face. Prints every change of the model, the answers to links, and the window as
// text.
//
// Owned by Console. Main thread only.
class ConsoleReport {
public:
    // `output` outlives this object.
    ConsoleReport(const MainThread& mainThread, ConsoleOutput& output, std::shared_ptr<AppModel> model);
    ~ConsoleReport();
    ConsoleReport(const ConsoleReport&) = delete;
    ConsoleReport& operator=(const ConsoleReport&) = delete;

    void line(std::string_view word, std::string_view rest) { output_.line(word, rest); }
    void error(const std::string& text);

    // Prints the whole window, and from then on its changes.
    void window();

    // Print one line each, when the model has answered.
    void status();
    void sample();

    // Returns how many messages and offers about links were printed.
    int linkAnswers() const { return linkAnswers_; }

private:
    void willChange(const AppState& now, const AppState& next);
    void showSetup(const Setup& setup);
    void showLink(const AppState& now, const AppState& next);
    void showPairing(const PairingSession::Snapshot& snapshot);
    void showNode(const NodeState& node);
    void showNews(const AppState& state);
    WindowContent contentOf(const AppState& state) const;

    // The restarts since the program started.
    struct Restarts {
        int node = 0;
        int driver = 0;
    };

    ConsoleOutput& output_;
    const std::shared_ptr<AppModel> model_;
    std::string installing_;  // the installer's last line
    Restarts restarts_;
    int linkAnswers_ = 0;
    PairingTranscript transcript_;
    std::string sessionID_;               // of transcript_
    std::optional<WindowContent> shown_;  // std::nullopt before the window is opened
    const ChangeFeed feed_;
    const CallbackGuard guard_;
};

}  // namespace tarnik
