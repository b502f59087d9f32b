#include "app/relocation/RelocationRun.h"

#include <algorithm>
#include <utility>

#include "app/bundle/BundleInfo.h"
#include "app/relocation/BundleMove.h"
#include "app/relocation/RelaunchCommand.h"
#include "core/foundation/Paths.h"
#include "core/relocation/Takeover.h"

namespace tarnik {

namespace {

using namespace Relocation::Decisions;

constexpr Seconds quitCheckInterval = Seconds(0.1);

Relocation::Launch launchOf(OwnCopy own) {
    return {
        .bundlePath = std::move(own.bundlePath),
        .isTranslocated = own.isTranslocated,
        .originalPath = std::move(own.originalPath),
        .isRelaunch = std::ranges::find(own.arguments, Relocation::relaunchArgument) != own.arguments.end()};
}

RelocationOutcome saying(Relocation::Message message) {
    return RelocationOutcomes::StayWithMessage{std::move(message.title), std::move(message.body)};
}

std::string_view nameOf(Relocation::TakeoverResult result) {
    switch (result) {
        case Relocation::TakeoverResult::quitGracefully: return "quitGracefully";
        case Relocation::TakeoverResult::neededForce: return "neededForce";
        case Relocation::TakeoverResult::stillRunning: break;
    }
    return "stillRunning";
}

}  // namespace

RelocationRun::RelocationRun(const RelocatorDeps& deps, const RelocationRecord& record,
                             const IsCancelled& isCancelled)
    : deps_(deps),
      record_(record),
      isCancelled_(isCancelled),
      launch_(launchOf(deps.bundles.ownCopy())),
      version_(bundleVersion(launch_.bundlePath).value_or("")) {}

RelocationOutcome RelocationRun::perform() {
    if (deps_.isDevelopmentBuild) {
        note(Stay{}, {}, {});
        return RelocationOutcomes::Stay{};
    }
    BundleMove::removeLeftovers(parentFolder(deps_.installPath), deps_.pid);

    const auto decision = decide();
    if (!mayCarryOut(decision)) return differentBuild(decision, {"installed=notOurs"});
    const auto others = deps_.bundles.others.startedBefore();
    if (others.empty()) return carryOut(decision);
    if (auto ended = settleWith(others, decision)) return *std::move(ended);
    // Decides again, because an older copy may have installed an update while it quit.
    const auto then = decide();
    if (!mayCarryOut(then)) return differentBuild(then, {"installed=notOurs"});
    return carryOut(then);
}

Relocation::Decision RelocationRun::decide() const {
    return Relocation::decide(
        {.launch = launch_,
         .installedVersion = bundleVersion(deps_.installPath),
         .runningVersion = version_,
         .canWriteApplications = deps_.bundles.files.canWrite(parentFolder(deps_.installPath)),
         .isDevelopmentBuild = deps_.isDevelopmentBuild},
        deps_.installPath);
}

bool RelocationRun::isOurs(const std::string& bundle) const {
    const auto& signatures = deps_.bundles.signatures;
    const auto team = signatures.teamIdentifier(launch_.bundlePath);
    switch (Relocation::installedCopy(team, signatures.teamIdentifier(bundle))) {
        case Relocation::InstalledCopy::lenient: return true;
        case Relocation::InstalledCopy::needsDesignatedRequirement:
            return signatures.satisfiesRequirement(bundle, *team);
        case Relocation::InstalledCopy::notOurs: break;
    }
    return false;
}

bool RelocationRun::mayCarryOut(const Relocation::Decision& decision) const {
    const auto* installs = std::get_if<Install>(&decision);
    const bool involvesInstalled =
        installs != nullptr ? installs->replacing : std::holds_alternative<OpenInstalled>(decision);
    return !involvesInstalled || isOurs(deps_.installPath);
}

std::optional<RelocationOutcome> RelocationRun::settleWith(const std::vector<OtherCopy>& others,
                                                           const Relocation::Decision& decision) const {
    using enum Relocation::RunningCopyAction;
    for (const auto& other : others) {
        const auto version = bundleVersion(other.bundlePath).value_or("");
        if (Relocation::runningCopyAction(version, version_) != activate) continue;
        deps_.bundles.others.postShowWindow();
        deps_.bundles.others.activate(other);
        note(decision, {}, {"activated=" + other.bundlePath});
        return RelocationOutcomes::Moving{};
    }
    for (const auto& other : others) {
        if (auto ended = takeOver(other)) return ended;
    }
    return std::nullopt;
}

std::optional<RelocationOutcome> RelocationRun::takeOver(const OtherCopy& other) const {
    const std::string running = "running=" + other.bundlePath;
    if (!isOurs(other.bundlePath)) return differentBuild(Takeover{}, {running, "result=notOurs"});

    const auto& others = deps_.bundles.others;
    const auto result = Relocation::takeOver({.isRunning = [&] { return others.isRunning(other); },
                                              .terminate = [&] { others.terminate(other); },
                                              .forceTerminate =
                                                  [&] {
                                                      if (!isCancelled_()) others.forceTerminate(other);
                                                  },
                                              .sleep = deps_.sleep.sleep,
                                              .interval = quitCheckInterval});
    note(Takeover{}, {}, {running, "result=" + std::string(nameOf(result))});
    if (result != Relocation::TakeoverResult::stillRunning) return std::nullopt;
    return saying(takeoverStuckMessage(launch_));
}

RelocationOutcome RelocationRun::carryOut(const Relocation::Decision& decision) const {
    if (isCancelled_()) return RelocationOutcomes::Stay{};
    if (std::holds_alternative<Stay>(decision)) return stay();
    if (std::holds_alternative<OpenInstalled>(decision)) return openInstalled();
    if (const auto* how = std::get_if<Install>(&decision)) return install(*how);
    note(decision, {}, {});
    return runHere();
}

RelocationOutcome RelocationRun::stay() const {
    const auto quarantine = clearQuarantineBelow(deps_.installPath, deps_.bundles.files);
    note(Stay{}, quarantine.healed(), quarantine.fields());
    return RelocationOutcomes::Stay{};
}

RelocationOutcome RelocationRun::openInstalled() const {
    return relaunch(OpenInstalled{}, clearQuarantineBelow(deps_.installPath, deps_.bundles.files));
}

RelocationOutcome RelocationRun::install(Install how) const {
    const BundleMove move{
        .from = launch_.bundlePath,
        .to = deps_.installPath,
        .version = version_,
        .replacing = how.replacing ? bundleVersion(deps_.installPath) : std::nullopt,
        .isOurs = [this](const std::string& bundle) { return isOurs(bundle); },
        .isCancelled = isCancelled_,
    };
    const auto moved = move.run(deps_.bundles.files, deps_.pid);
    if (moved) return relaunch(how, *moved);
    note(how, {}, {"failed=" + moved.error().describe()});
    return runHere();
}

RelocationOutcome RelocationRun::relaunch(const Relocation::Decision& decision,
                                          const QuarantineReport& quarantine) const {
    if (isCancelled_()) return RelocationOutcomes::Stay{};
    auto fields = quarantine.fields();
    const auto started = deps_.spawn(relaunchAfter(deps_.pid, deps_.installPath));
    if (!started) {
        fields.push_back("failed=" + describe(started.error()));
        note(decision, quarantine.healed(), fields);
        return runHere();
    }
    // Moves the original to the trash last, because the system may prompt the user, and because the original
    // is still needed if the relaunch fails.
    if (std::holds_alternative<Install>(decision)) fields.push_back("trash=" + trashOriginal());
    note(decision, quarantine.healed(), fields);
    return RelocationOutcomes::Moving{};
}

// Moves the copy that the user opened to the trash. Returns the result for the record.
std::string RelocationRun::trashOriginal() const {
    const auto& files = deps_.bundles.files;
    if (launch_.isTranslocated && !launch_.originalPath) return "unknown";
    const std::string original = launch_.realPath();
    if (!files.canWrite(parentFolder(original))) return "readOnly";
    // The user may have replaced the original meanwhile.
    if (bundleVersion(original) != version_) return "changed";
    const auto trashed = files.trash(original);
    return trashed ? "done" : describe(trashed.error());
}

RelocationOutcome RelocationRun::runHere() const {
    return saying(runHereMessage(launch_, deps_.installPath));
}

RelocationOutcome RelocationRun::differentBuild(const Relocation::Decision& decision,
                                                const Fields& extra) const {
    note(decision, {}, extra);
    return saying(differentBuildMessage(launch_));
}

void RelocationRun::note(const Relocation::Decision& decision, std::optional<bool> healed,
                         const Fields& extra) const {
    record_.append(recordLine(launch_, decision, healed, extra, deps_.now()));
}

}  // namespace tarnik
