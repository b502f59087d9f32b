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

std::string missingArgument(const std::string& command, const std::string& placeholder) {
    return command + " needs an argument: " + placeholder;
}

std::string excessArgument(const std::string& command, const std::string& word) {
    return command + " doesn't take the argument '" + word + "'";
}

std::string seeHelp(const std::string& command) {
    return "Try: tarnik " + command + " --help";
}

}  // namespace tarnik::CommandTexts
