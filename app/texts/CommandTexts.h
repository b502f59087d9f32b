#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "app/options/ExitCode.h"

// The usage, headings and errors of the commands. The tables of commands and of options have their summaries.
namespace tarnik::CommandTexts {

using Text = const char*;

inline constexpr Text programUsage =
    "usage: tarnik [OPTION...] [LINK]\n"
    "       tarnik COMMAND [OPTION...]\n"
    "\n"
    "tarnik connects this computer to your account, so that your agent can work on it.\n"
    "Without a command it shows its icon in the tray, and its window if you have to act.\n"
    "LINK is a link from your chat; a tarnik whose window runs uses it.\n"
    "\n"
    "Commands (`tarnik COMMAND --help` describes each):\n";
inline constexpr Text optionsHeading = "\nOptions:\n";
inline constexpr Text exitHeading = "\nExit status:\n";
inline constexpr Text developerUsage = "usage: tarnik [OPTION...]\n\nOptions for developers:\n";

inline constexpr std::array exitStatuses{
    std::pair(ExitCode::done, "done"),
    std::pair(ExitCode::failed, "failed"),
    std::pair(ExitCode::wrongUse, "the command line is wrong"),
    std::pair(ExitCode::notRunning, "tarnik isn't running"),
    std::pair(ExitCode::notConnected, "this computer isn't connected"),
    std::pair(ExitCode::homeInUse, "another program uses the helper's folder"),
};

inline constexpr Text cantWrite = "the output couldn't be written";

// Returns the text with a capital letter and a full stop.
std::string sentence(std::string_view text);

std::string unknownCommand(const std::string& word, std::optional<std::string_view> nearest);
std::string missingArgument(const std::string& command, const std::string& placeholder);
std::string excessArgument(const std::string& command, const std::string& word);
std::string seeHelp(const std::string& command);

}  // namespace tarnik::CommandTexts
