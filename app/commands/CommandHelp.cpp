#include "app/commands/CommandHelp.h"

#include <algorithm>
#include <utility>

#include "app/commands/CommandTable.h"
#include "app/texts/CommandTexts.h"

namespace tarnik {
namespace {

using enum OptionEntry::Audience;

// A table of two columns.
using Rows = std::vector<std::pair<std::string, std::string>>;

std::string printed(const Rows& rows) {
    std::size_t width = 0;
    for (const auto& [name, text] : rows) width = std::max(width, name.size());
    std::string page;
    for (const auto& [name, text] : rows)
        page.append("  ").append(name).append(width - name.size() + 2, ' ').append(text) += '\n';
    return page;
}

// Returns "-n, --lines N".
std::string nameOf(const OptionEntry& entry) {
    std::string name = entry.letter == '\0' ? "" : std::string("-") + entry.letter + ", ";
    name += std::string("--") + entry.name;
    return entry.takesValue() ? name + " " + entry.value : name;
}

Rows optionRows(const std::vector<OptionEntry>& entries,
                std::initializer_list<OptionEntry::Audience> audiences) {
    Rows rows;
    for (const auto& entry : entries) {
        if (std::ranges::find(audiences, entry.audience) != audiences.end())
            rows.emplace_back(nameOf(entry), entry.summary);
    }
    return rows;
}

Rows exitRows() {
    Rows rows;
    for (const auto& [code, meaning] : CommandTexts::exitStatuses)
        rows.emplace_back(std::to_string(exitStatus(code)), meaning);
    return rows;
}

}  // namespace

std::vector<OptionEntry> optionsOf(const Command& command, CommandLine::Build build) {
    auto entries = acceptedOptions(command.options, build);
    entries.push_back(helpOption);
    return entries;
}

std::string_view placeholderOf(const Command& command) {
    const std::string_view argument = command.argument;
    return argument.starts_with('[') ? argument.substr(1, argument.size() - 2) : argument;
}

std::string programHelp(CommandLine::Build build) {
    Rows commands;
    for (const auto& command : commandTable()) commands.emplace_back(command.name, command.summary);
    return CommandTexts::programUsage + printed(commands) + CommandTexts::optionsHeading +
           printed(optionRows(CommandLine::options(build), {users})) + CommandTexts::exitHeading +
           printed(exitRows());
}

std::string developerHelp(CommandLine::Build build) {
    return CommandTexts::developerUsage +
           printed(optionRows(CommandLine::options(build), {developers, developmentBuilds}));
}

std::string commandHelp(const Command& command, CommandLine::Build build) {
    const auto options = optionsOf(command, build);
    std::string page = std::string("usage: tarnik ") + command.name + " [OPTION...]";
    if (*command.argument != '\0') page += std::string(" ") + command.argument;
    page += "\n\n" + CommandTexts::sentence(command.summary) + "\n" + command.details + "\n";
    return page + printed(optionRows(options, {users, developers, developmentBuilds}));
}

}  // namespace tarnik
