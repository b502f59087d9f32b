#include "app/console/ConsoleOptions.h"

#include <cstdlib>
#include <functional>
#include <map>

#include "core/foundation/OneLine.h"

namespace tarnik {
namespace {

constexpr double longestConnectedAfter = 3600;
constexpr std::size_t longestQuote = 200;

std::string quoted(const std::string& word) {
    return oneLine(word, longestQuote);
}

std::optional<Seconds> parseSeconds(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(value > 0) || value > longestConnectedAfter) return std::nullopt;
    return Seconds(value);
}

// What to do with the value after an option; the error names what is wrong with it.
using Take = std::function<std::string(ConsoleOptions&, const std::string&)>;

std::map<std::string, Take> options(ConsoleOptions::Build build) {
    std::map<std::string, Take> known{
        {"--node-home",
         [](auto& options, const auto& value) {
             options.nodeHome = value;
             return "";
         }},
        {"--link",
         [](auto& options, const auto& value) {
             options.link = value;
             return "";
         }},
        {"--switches",
         [](auto& options, const auto& value) {
             options.switchesOn = value == "on";
             return value == "on" || value == "off" ? "" : "--switches takes on or off, not " + quoted(value);
         }},
        {"--connected-after",
         [](auto& options, const auto& value) -> std::string {
             const auto seconds = parseSeconds(value);
             if (!seconds) return "--connected-after takes seconds, up to 3600, not " + quoted(value);
             options.connectedAfter = *seconds;
             return "";
         }},
    };
    if (build == ConsoleOptions::Build::development) {
        known.emplace("--keep-awake", [](auto& options, const auto& value) {
            options.keepAwake = value;
            return "";
        });
        known.emplace("--bundle", [](auto& options, const auto& value) {
            options.bundle = value;
            return "";
        });
    }
    return known;
}

}  // namespace

std::string ConsoleOptions::usage(Build build) {
    std::string text =
        "usage: tarnik --console [OPTION...]\n"
        "\n"
        "  --console                  run the whole machine in this terminal, without a window\n"
        "  --link LINK                pair with this link right after the start\n"
        "  --node-home DIR            keep the helper in DIR instead of ~/.tarnik/node\n"
        "  --connected-after SECONDS  how long a pairing must last to count as connected (15)\n"
        "  --switches on|off          how the two simulated privacy switches stand at the start (off)\n"
        "  --driver-output            show what the desktop driver prints\n";
    if (build == Build::development) {
        text +=
            "  --bundle DIR               take the settings and the driver from this bundle folder\n"
            "  --keep-awake PATH          what the helper runs to hold the machine awake\n";
    }
    return text + "  --help                     show this and end\n";
}

std::expected<ConsoleOptions, std::string> ConsoleOptions::parse(const std::vector<std::string>& words,
                                                                 Build build) {
    const auto known = tarnik::options(build);
    ConsoleOptions options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "--console") {
            options.console = true;
        } else if (word == "--help") {
            options.help = true;
        } else if (word == "--driver-output") {
            options.driverOutput = true;
        } else if (const auto option = known.find(word); option == known.end()) {
            return std::unexpected("unknown argument " + quoted(word) + " (--help lists them)");
        } else if (i + 1 == words.size()) {
            return std::unexpected(word + " needs a value after it");
        } else if (const auto wrong = option->second(options, words[++i]); !wrong.empty()) {
            return std::unexpected(wrong);
        }
    }
    return options;
}

}  // namespace tarnik
