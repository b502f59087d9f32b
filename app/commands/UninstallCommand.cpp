#include <array>
#include <cstdio>
#include <string_view>

#include <unistd.h>

#include "app/commands/Commands.h"
#include "app/control/ControlClient.h"
#include "app/control/ControlFolder.h"
#include "app/model/ChosenHome.h"
#include "app/platform/StoredPreferences.h"
#include "app/texts/UninstallTexts.h"
#include "app/uninstall/UninstallPlan.h"

namespace tarnik {
namespace {

namespace Texts = UninstallTexts;

constexpr Seconds stopTimeout = Seconds(60);  // tarnik ends within 40 s

void print(CommandOutput& output, const UninstallPlan& plan, Texts::Text heading) {
    if (!plan.items.empty()) output.line(output.styled(CommandOutput::Style::bold, heading));
    for (const auto& item : plan.items)
        output.line("  " + item.what + "  " + output.styled(CommandOutput::Style::dim, item.why));
    if (!plan.kept.empty()) output.line(output.styled(CommandOutput::Style::bold, Texts::leftAlone));
    for (const auto& sentence : plan.kept) output.line("  " + sentence);
}

bool isConfirmed(CommandOutput& output) {
    output.write(Texts::question);
    std::array<char, 64> answer{};
    if (std::fgets(answer.data(), static_cast<int>(answer.size()), stdin) == nullptr) return false;
    return std::string_view(answer.data()) == "yes\n";
}

// Stops the running program. Returns false if it doesn't end in time.
bool stopProgram(const std::vector<std::string>& controlFolders, CommandOutput& output) {
    auto client = ControlClient::connect(controlFolders);
    if (!client) return true;
    output.note(Texts::stopping);
    const TimePoint deadline = after(steadyNow(), stopTimeout);
    if (!client->send({.kind = ControlRequest::Kind::quit})) return true;
    // The program closes the connection when it has stopped everything.
    for (;;) {
        const auto answer = client->receive(deadline - steadyNow());
        if (!answer) return answer.error() != ControlClient::Failure::timedOut;
    }
}

// Ends at the first failure. The homes come first, so nothing is removed while a program uses one.
ExitCode removeAll(const UninstallPlan& plan, CommandOutput& output) {
    for (const auto& item : plan.items) {
        if (const auto removed = item.remove(); !removed) {
            output.error(removed.error());
            output.note(Texts::ended);
            return ExitCode::failed;
        }
        output.line(Texts::removed(item.what));
    }
    output.line(Texts::done);
    return ExitCode::done;
}

// Returns the home of the command line, or the chosen and the default one.
std::expected<std::vector<NodeHome>, std::string> homesOf(const CommandOptions& options,
                                                          const ProgramRun& run) {
    if (const auto given = options.value(StandardOptions::nodeHome.name)) {
        auto home = NodeHome::resolve(given, run.userFolder);
        if (!home) return std::unexpected(describe(home.error()));
        if (!home->isClaimed()) return std::unexpected(Texts::notOurs(home->path));
        return std::vector{*std::move(home)};
    }
    const NodeHome standard{.path = NodeHome::defaultPath(run.userFolder), .isDefault = true};
    const auto chosen = chosenHome(storedPreferences(run.place.folders, [](const auto&) {}), run.userFolder);
    if (!chosen || chosen->isDefault) return std::vector{standard};
    return std::vector{*chosen, standard};
}

}  // namespace

ExitCode runUninstall(const CommandOptions& options, const CommandDeps& deps) {
    const auto homes = homesOf(options, deps.run);
    if (!homes) {
        deps.output.error(homes.error());
        return ExitCode::failed;
    }
    const auto& folders = deps.run.place.folders;
    const UninstallPlan::Places places{
        .homes = *homes,
        .folders = folders,
        .controlFolders = ControlFolder::candidates(deps.run.environment, folders)};
    const bool isDryRun = options.has("dry-run");
    const bool asks = !isDryRun && !options.has(StandardOptions::yes.name);
    const auto plan = UninstallPlan::make(places);
    if (plan.items.empty()) deps.output.line(Texts::nothing);
    print(deps.output, plan, isDryRun ? Texts::wouldRemove : Texts::willRemove);
    if (ControlClient::connect(places.controlFolders)) deps.output.line(Texts::runsNow);
    if (isDryRun && !plan.items.empty()) deps.output.line(Texts::dryRunEnd);
    if (isDryRun || plan.items.empty()) return ExitCode::done;
    if (asks && ::isatty(STDIN_FILENO) == 0) {
        deps.output.error(Texts::needsYes);
        return ExitCode::wrongUse;
    }
    if (asks && !isConfirmed(deps.output)) {
        deps.output.note(Texts::notConfirmed);
        return ExitCode::failed;
    }
    if (!stopProgram(places.controlFolders, deps.output)) {
        deps.output.error(Texts::stillRunning);
        return ExitCode::homeInUse;
    }
    return removeAll(UninstallPlan::make(places), deps.output);  // some files have gone with the program
}

}  // namespace tarnik
