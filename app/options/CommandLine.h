#pragma once

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/options/CommandOptions.h"
#include "core/foundation/Time.h"

namespace tarnik {

// The parsed command line of a start without a command.
struct CommandLine {
    // Only development builds accept options that replace settings of the bundle.
    enum class Build { development, release };
    static Build thisBuild();

    enum class Task {
        openWindow,
        runConsole,
        showHelp,
        showDeveloperHelp,
        showVersion,
        listScreens,
        showScreen,
        writeScreens
    };

    Task task = Task::openWindow;
    std::optional<std::string> link;      // the link to pair with
    std::optional<std::string> nodeHome;  // replaces the node home for this run
    std::optional<std::string> bundle;    // replaces the program's bundle folder; development builds only
    Seconds connectedAfter = Seconds(15);
    Seconds awayAfter = std::chrono::minutes(5);  // the helper's absence that a notice reports
    std::optional<std::string> keepAwake;  // a stand-in for the keep-awake program; development builds only

    // For the window.
    bool atLogin = false;                 // the system started the program at login
    std::string screen;                   // the screen to show, or the folder for all pictures
    bool dark = false;                    // shows the screen in dark colours
    std::optional<std::string> language;  // of the window, instead of the person's

    // For the console.
    bool switchesOn = false;    // initial state of both simulated switches
    bool driverOutput = false;  // shows the driver's output

    // Parses the arguments after the program's name. The error is one line that names the faulty argument.
    static std::expected<CommandLine, std::string> parse(const std::vector<std::string>& words, Build build);

    // Returns the options that parse() accepts.
    static std::vector<OptionEntry> options(Build build);

    bool operator==(const CommandLine&) const = default;
};

// Returns the options of `entries` that this kind of build accepts.
std::vector<OptionEntry> acceptedOptions(std::span<const OptionEntry> entries, CommandLine::Build build);

// Returns true if the word contains "://" or is long enough for a bare code. Any other word is treated as a
// mistyped command.
bool resemblesLink(std::string_view word);

}  // namespace tarnik
