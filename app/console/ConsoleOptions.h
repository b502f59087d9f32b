#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "core/foundation/Time.h"

namespace tarnik {

// What the command line asks for.
struct ConsoleOptions {
    bool console = false;
    bool help = false;
    std::optional<std::string> nodeHome;
    Seconds connectedAfter = Seconds(15);

    static constexpr const char* usage =
        "usage: tarnik --console [--node-home DIR] [--connected-after SECONDS]\n"
        "\n"
        "  --console                  run the whole machine in this terminal, without a window\n"
        "  --node-home DIR            keep the helper in DIR instead of ~/.tarnik/node\n"
        "  --connected-after SECONDS  how long a pairing must last to count as connected (15)\n"
        "  --help                     show this and end\n";

    // Takes the words after the program's name; the error is one line naming what is wrong.
    static std::expected<ConsoleOptions, std::string> parse(const std::vector<std::string>& words);

    bool operator==(const ConsoleOptions&) const = default;
};

}  // namespace tarnik
