#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "core/foundation/Time.h"

namespace tarnik {

// What the command line asks for.
struct CommandLine {
    // Builds for development take settings from elsewhere than their own bundle.
    enum class Build { development, release };
    static Build thisBuild();

    enum class Task { openWindow, runConsole, showHelp, showVersion, listScreens, showScreen, writeScreens };

    Task task = Task::openWindow;
    std::optional<std::string> link;      // to pair with
    std::optional<std::string> nodeHome;  // for this run
    std::optional<std::string> bundle;    // a folder; development builds only
    Seconds connectedAfter = Seconds(15);
    std::optional<std::string> keepAwake;  // a stand-in for the keep-awake program; development builds only

    // Of the window.
    bool atLogin = false;  // started by the system when the person logged in
    std::string screen;    // to show; the folder to write them to
    bool dark = false;     // the colours of the screen that is shown

    // Of the console.
    bool switchesOn = false;    // both simulated switches, at the start
    bool driverOutput = false;  // show what the driver prints

    static std::string usage(Build build);

    // Takes the words after the program's name; the error is one line naming what is wrong.
    static std::expected<CommandLine, std::string> parse(const std::vector<std::string>& words, Build build);

    bool operator==(const CommandLine&) const = default;
};

}  // namespace tarnik
