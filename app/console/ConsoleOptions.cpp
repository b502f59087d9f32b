#include "app/console/ConsoleOptions.h"

#include <cstdlib>

#include "app/console/PlainText.h"

namespace tarnik {
namespace {

constexpr double longestConnectedAfter = 3600;

std::optional<Seconds> parseSeconds(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(value > 0) || value > longestConnectedAfter) return std::nullopt;
    return Seconds(value);
}

}  // namespace

std::expected<ConsoleOptions, std::string> ConsoleOptions::parse(const std::vector<std::string>& words) {
    ConsoleOptions options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        const bool takesValue = word == "--node-home" || word == "--connected-after";
        if (takesValue && i + 1 == words.size()) return std::unexpected(word + " needs a value after it");
        if (word == "--console") {
            options.console = true;
        } else if (word == "--help") {
            options.help = true;
        } else if (word == "--node-home") {
            options.nodeHome = words[++i];
        } else if (word == "--connected-after") {
            const auto seconds = parseSeconds(words[++i]);
            if (!seconds)
                return std::unexpected("--connected-after takes seconds, up to 3600, not " + shown(words[i]));
            options.connectedAfter = *seconds;
        } else {
            return std::unexpected("unknown argument " + shown(word) + " (--help lists them)");
        }
    }
    return options;
}

}  // namespace tarnik
