#pragma once

#include <span>

#include "app/ProgramStart.h"
#include "app/commands/CommandOptions.h"
#include "app/commands/CommandOutput.h"
#include "app/commands/ExitCode.h"

namespace tarnik {

// The parts of the program that a command uses.
struct CommandDeps {
    CommandOutput& output;
    const ProgramRun& run;  // environment, folders and bundle
};

using RunCommand = ExitCode (*)(const CommandOptions& options, const CommandDeps& deps);

// One command of the program: `tarnik NAME [OPTION...] [ARGUMENT]`.
struct Command {
    const char* name;
    const char* summary;       // one line, begins with a lower-case verb
    const char* details = "";  // more lines for the command's own help, each of at most 78 characters
    std::span<const OptionEntry> options = {};
    const char* argument = "";  // a placeholder as in OptionEntry, "[FILE]" if it may be missing
    RunCommand run = nullptr;   // null if tarnik-console runs the command; see HeavyCommands.cpp
};

// Options that several commands have.
namespace StandardOptions {

inline constexpr OptionEntry json{.name = "json", .summary = "print JSON"};
inline constexpr OptionEntry yes{.name = "yes", .letter = 'y', .summary = "don't ask for confirmation"};
inline constexpr OptionEntry nodeHome{
    .name = "node-home", .value = "DIR", .summary = "use the helper in DIR instead of ~/.tarnik/node"};
inline constexpr OptionEntry bundle{.name = "bundle",
                                    .value = "DIR",
                                    .summary = "use the settings and the driver of this bundle folder",
                                    .audience = OptionEntry::Audience::developmentBuilds};

inline constexpr OptionEntry keepAwake{.name = "keep-awake",
                                       .value = "FILE",
                                       .summary = "the program by which the helper keeps the computer awake",
                                       .audience = OptionEntry::Audience::developmentBuilds};
inline constexpr OptionEntry connectedAfter{
    .name = "connected-after",
    .value = "SECONDS",
    .summary = "count a pairing as connected after this time; the default is 15",
    .audience = OptionEntry::Audience::developers};

}  // namespace StandardOptions

}  // namespace tarnik
