#include "app/texts/CommandTexts.h"

#include <cctype>

namespace tarnik::CommandTexts {

std::string sentence(std::string_view text) {
    std::string sentence(text);
    if (sentence.empty()) return sentence;
    sentence[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence[0])));
    return sentence + ".";
}

std::string unknownCommand(const std::string& word, std::optional<std::string_view> nearest) {
    const std::string unknown = "'" + word + "' is neither a command nor a link";
    if (nearest) return unknown + "; did you mean " + std::string(*nearest) + "?";
    return unknown + " (tarnik --help lists the commands)";
}

std::string missingArgument(const Command& command) {
    return std::string(command.name) + " needs an argument: " + command.argument;
}

std::string excessArgument(const Command& command, const std::string& word) {
    return std::string(command.name) + " doesn't take the argument '" + word + "'";
}

std::string seeHelp(const Command& command) {
    return std::string("Try: tarnik ") + command.name + " --help";
}

}  // namespace tarnik::CommandTexts
