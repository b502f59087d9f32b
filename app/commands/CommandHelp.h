#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/commands/Command.h"
#include "app/options/CommandLine.h"

// The help pages, generated from the tables of commands and options.
namespace tarnik {

inline constexpr OptionEntry helpOption{.name = "help", .letter = 'h', .summary = "show this help"};

// Returns all options of the command, with --help.
std::vector<OptionEntry> optionsOf(const Command& command, CommandLine::Build build);

// Returns the placeholder of the command's argument without the brackets of an optional one.
std::string_view placeholderOf(const Command& command);

// Returns the page for users.
std::string programHelp(CommandLine::Build build);

// Returns the page with the options for developers.
std::string developerHelp(CommandLine::Build build);

// Returns the page of one command.
std::string commandHelp(const Command& command, CommandLine::Build build);

}  // namespace tarnik
