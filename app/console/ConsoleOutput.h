#pragma once

#include <string>
#include <string_view>

#include "app/model/AppState.h"
#include "core/foundation/Time.h"

namespace tarnik {

// Writes the console's lines: a time, a word, the rest. Coloured only on a terminal, and not where NO_COLOR
// is set. Used on the main thread.
class ConsoleOutput {
public:
    ConsoleOutput();

    // On standard output: "12:00:01.250 state running".
    void line(std::string_view word, std::string_view rest);

    // On standard error: "12:00:01.250 the node stopped (exit 1)".
    void message(std::string_view text);

    // Only for a person at a terminal.
    void hint(std::string_view text);

    // How far a download is: a bar that stays in its place on a terminal, a line now and then elsewhere.
    void progress(const AppState::Download& download);

private:
    void clearBar();

    const bool onTerminal_;
    const bool coloured_;
    const bool colouredMessages_;
    bool barShown_ = false;
    TimePoint nextProgressLine_;
};

}  // namespace tarnik
