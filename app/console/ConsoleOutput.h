#pragma once

#include <string>
#include <string_view>

#include "app/model/AppState.h"
#include "core/foundation/Time.h"

namespace tarnik {

// Writes the lines of the console. Uses colours on a terminal, unless NO_COLOR is set. Main thread only.
class ConsoleOutput {
public:
    ConsoleOutput();

    // Writes to standard output: "12:00:01.250 state running".
    void line(std::string_view word, std::string_view rest);

    // Writes to standard error: "12:00:01.250 the node stopped (exit 1)".
    void message(std::string_view text);

    // Writes to standard output if it is a terminal.
    void hint(std::string_view text);

    // On a terminal, draws a bar and updates it in place. Elsewhere, writes a line at most every two seconds,
    // and one when the download is complete. Ignores downloads of less than 1 MB.
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
