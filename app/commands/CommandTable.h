#pragma once

#include <span>
#include <string>
#include <string_view>

#include "app/commands/Command.h"

namespace tarnik {

// Returns all commands, in the order of the help. A command that isn't in this table doesn't exist.
std::span<const Command> commandTable();

// Returns null if no command has this name.
const Command* findCommand(std::string_view name);

// Returns the message for a word that is neither a command nor a link. It names the nearest command.
std::string unknownCommand(const std::string& word);

// Parses the words after the command's name and calls `run`. Prints the command's help instead if they
// request it, or a message if they are wrong. Returns the exit status.
int runCommand(const Command& command, RunCommand run, const std::vector<std::string>& words,
               const char* programName);

}  // namespace tarnik
