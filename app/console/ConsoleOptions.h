#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "core/foundation/Time.h"

namespace tarnik {

// What the command line asks for.
struct ConsoleOptions {
    // Builds for development take settings from elsewhere than their own bundle.
    enum class Build { development, release };
    static Build thisBuild();

    bool console = false;
    bool help = false;
    std::optional<std::string> nodeHome;
    std::optional<std::string> bundle;  // a folder; development builds only
    std::optional<std::string> link;    // to pair with right after the start
    Seconds connectedAfter = Seconds(15);
    std::optional<std::string> keepAwake;  // a stand-in for the keep-awake program; development builds only
    bool switchesOn = false;               // both simulated switches, at the start
    bool driverOutput = false;             // show what the driver prints

    static std::string usage(Build build);

    // Takes the words after the program's name; the error is one line naming what is wrong.
    static std::expected<ConsoleOptions, std::string> parse(const std::vector<std::string>& words,
                                                            Build build);

    bool operator==(const ConsoleOptions&) const = default;
};

}  // namespace tarnik
