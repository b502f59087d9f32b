#include <array>
#include <cstdio>
#include <string_view>

#include <unistd.h>

#include "app/commands/Commands.h"
#include "app/commands/ExaminedInstallation.h"
#include "app/commands/RunningProgram.h"
#include "app/control/ControlClient.h"
#include "app/control/ControlFolder.h"
#include "app/control/Status.h"
#include "app/model/ChosenHome.h"
#include "app/options/StandardOptions.h"
#include "app/platform/StoredPreferences.h"
#include "app/texts/UninstallTexts.h"
#include "app/uninstall/UninstallPlan.h"
#include "core/foundation/Paths.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

namespace Texts = UninstallTexts;

constexpr Seconds stopTimeout = Seconds(60);  // tarnik ends within 40 s

// Removes control characters, which file names may contain.
std::string printable(const std::string& text) {
    constexpr std::size_t longestText = 10'000;
    return sanitizedLine(text, longestText);
}

void print(CommandOutput& output, const UninstallPlan& plan, Texts::Text heading) {
    if (!plan.items.empty()) output.line(output.styled(CommandOutput::Style::bold, heading));
    for (const auto& item : plan.items)
        output.line("  " + printable(item.what) + "  " + output.styled(CommandOutput::Style::dim, item.why));
    if (!plan.kept.empty()) output.line(output.styled(CommandOutput::Style::bold, Texts::leftAlone));
    for (const auto& sentence : plan.kept) output.line("  " + printable(sentence));
}

bool isConfirmed(CommandOutput& output) {
    output.write(Texts::question);
    std::array<char, 64> answer{};
    if (std::fgets(answer.data(), static_cast<int>(answer.size()), stdin) == nullptr) return false;
    return std::string_view(answer.data()) == "yes\n";
}

// Stops the running program. Prints the reason of a failure, and returns the exit code for it.
ExitCode stopProgram(const std::vector<std::string>& controlFolders, const CommandDeps& deps) {
    using Failure = ControlClient::Failure;
    auto client = ControlClient::connect(controlFolders);
    if (!client && client.error() == Failure::notRunning) return ExitCode::done;
    if (!client) return RunningProgram::report(deps, client.error());
    deps.output.note(Texts::stopping);
    const TimePoint deadline = after(steadyNow(), stopTimeout);
    if (const auto sent = client->send({.kind = ControlRequest::Kind::quit}); !sent)
        return RunningProgram::report(deps, sent.error());
    // The program closes the connection when it has stopped everything.
    for (;;) {
        const auto answer = client->receive(deadline - steadyNow());
        if (answer) {
            if (const auto* error = std::get_if<ControlError>(&answer->content))
                return RunningProgram::report(deps, *error);
        } else if (answer.error() == Failure::timedOut) {
            deps.output.error(Texts::stillRunning);
            return ExitCode::homeInUse;
        } else {
            return answer.error() == Failure::ended ? ExitCode::done
                                                    : RunningProgram::report(deps, answer.error());
        }
    }
}

// Ends at the first failure. Removes nothing while a program uses a home.
ExitCode removeAll(const UninstallPlan::Places& places, CommandOutput& output) {
    const auto locks = lockHomes(places);
    if (!locks) {
        output.error(printable(locks.error()));
        output.note(Texts::nothingRemoved);
        return ExitCode::homeInUse;
    }
    const auto plan = UninstallPlan::make(places);  // some files have gone with the program
    if (plan.obstacle) {
        output.error(printable(*plan.obstacle));
        output.note(Texts::nothingRemoved);
        return ExitCode::failed;
    }
    for (const auto& item : plan.items) {
        if (const auto removed = item.remove(); !removed) {
            output.error(printable(removed.error()));
            output.note(Texts::ended);
            return ExitCode::failed;
        }
        output.line(printable(Texts::removed(item.what)));
    }
    output.line(Texts::done);
    return ExitCode::done;
}

// Returns the home of the command line, or the chosen and the default one.
std::expected<UninstallPlan::Places, std::string> placesOf(const CommandOptions& options,
                                                           const ProgramRun& run) {
    const auto& folders = run.place.folders;
    UninstallPlan::Places places{.homes = {},
                                 .folders = folders,
                                 .controlFolders = ControlFolder::candidates(run.environment, folders)};
    const NodeHome standard{.path = NodeHome::defaultPath(run.userFolder), .isDefault = true};
    const auto chosen =
        chosenHome(storedPreferences(folders, [](const auto&) {}), run.userFolder).value_or(standard);
    const auto given = options.value(StandardOptions::nodeHome.name);
    if (!given) {
        places.homes.push_back(chosen);
        if (!chosen.isDefault) places.homes.push_back(standard);
        return places;
    }
    auto home = NodeHome::resolve(given, run.userFolder);
    if (!home) return std::unexpected(describe(home.error()));
    if (isLink(home->path)) return std::unexpected(Texts::notAFile(home->path));
    if (!home->isClaimed()) return std::unexpected(Texts::notOurs(home->path));
    if (resolvingLinks(home->path) != resolvingLinks(chosen.path)) places.otherHome = chosen.path;
    places.homes.push_back(*std::move(home));
    return places;
}

// Returns true if a program runs and has to end first. One that uses another home may go on if only a home is
// removed.
bool mustStop(const UninstallPlan::Places& places, const ProgramRun& run) {
    if (!places.otherHome) return ControlClient::connect(places.controlFolders).has_value();
    const auto status = statusOfRunningCopy(run);
    const auto running = status ? Status::of(*status) : std::nullopt;
    const auto home = running ? running->folders.nodeHome : std::nullopt;
    return home && resolvingLinks(*home) == resolvingLinks(places.homes.front().path);
}

}  // namespace

ExitCode runUninstall(const CommandOptions& options, const CommandDeps& deps) {
    const auto found = placesOf(options, deps.run);
    if (!found) {
        deps.output.error(printable(found.error()));
        return ExitCode::failed;
    }
    const auto& places = *found;
    const bool isDryRun = options.has("dry-run");
    const bool asks = !isDryRun && !options.has(StandardOptions::yes.name);
    const auto plan = UninstallPlan::make(places);
    if (plan.items.empty() && !plan.obstacle) deps.output.line(Texts::nothing);
    print(deps.output, plan, isDryRun ? Texts::wouldRemove : Texts::willRemove);
    const bool stopsFirst = mustStop(places, deps.run);
    if (stopsFirst) deps.output.line(Texts::runsNow);
    if (plan.obstacle) {
        deps.output.error(printable(*plan.obstacle));
        deps.output.note(Texts::nothingRemoved);
        return ExitCode::failed;
    }
    if (isDryRun && !plan.items.empty()) deps.output.line(Texts::dryRunEnd);
    if (isDryRun || plan.items.empty()) return ExitCode::done;
    if (asks && ::isatty(STDIN_FILENO) == 0) {
        deps.output.error(Texts::needsYes);
        return ExitCode::wrongUse;
    }
    if (asks && !isConfirmed(deps.output)) {
        deps.output.note(Texts::nothingRemoved);
        return ExitCode::failed;
    }
    const bool mayRunOn = places.otherHome && !stopsFirst;
    const auto stopped = mayRunOn ? ExitCode::done : stopProgram(places.controlFolders, deps);
    if (stopped != ExitCode::done) {
        deps.output.note(Texts::nothingRemoved);
        return stopped;
    }
    return removeAll(places, deps.output);
}

}  // namespace tarnik
