#include "app/commands/Commands.h"
#include "app/commands/ExaminedInstallation.h"
#include "app/doctor/FindingText.h"
#include "app/doctor/ProvenanceText.h"
#include "app/options/StandardOptions.h"
#include "app/texts/DoctorTexts.h"

namespace tarnik {

namespace {

ExitCode refuse(const std::string& reason, bool asJson, CommandOutput& output) {
    output.error(reason);
    if (asJson) output.line(provenanceJson({.reason = reason}));
    return ExitCode::failed;
}

}  // namespace

ExitCode runVerify(const CommandOptions& options, const CommandDeps& deps) {
    const auto subject = examinedInstallation(options, deps.run);
    const bool asJson = options.has(StandardOptions::json.name);
    if (!subject.home) return refuse(describe(subject.home.error()), asJson, deps.output);
    if (!subject.home->isInstalled()) return refuse(DoctorTexts::notInstalled.sentence, asJson, deps.output);
    const auto check = ProvenanceCheck::of(*subject.home, subject.host.settings.nodeReleasePublicKey,
                                           ReleaseCrypto::platform());
    if (asJson) {
        deps.output.line(provenanceJson(check));
    } else {
        for (const auto& line : provenanceLines(check)) deps.output.line(line);
        const auto finding = provenanceFinding(check);
        if (finding.isProblem()) {
            deps.output.line(DoctorTexts::repair);
            for (const auto& folder : {subject.home->appDir(), subject.home->runtimeDir()})
                deps.output.line("  " + printable(folder));
        } else if (!finding.remedy.empty()) {
            deps.output.line(finding.remedy);
        }
    }
    return check.isGood() ? ExitCode::done : ExitCode::failed;
}

}  // namespace tarnik
