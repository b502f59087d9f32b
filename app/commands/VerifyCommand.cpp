#include "app/commands/Commands.h"
#include "app/commands/ExaminedInstallation.h"
#include "app/doctor/ProvenanceText.h"
#include "app/texts/DoctorTexts.h"

namespace tarnik {

ExitCode runVerify(const CommandOptions& options, const CommandDeps& deps) {
    const auto subject = examinedInstallation(options, deps.run);
    if (!subject.home) {
        deps.output.error(describe(subject.home.error()));
        return ExitCode::failed;
    }
    if (!subject.home->isInstalled()) {
        deps.output.error(DoctorTexts::notInstalled.sentence);
        return ExitCode::failed;
    }
    const auto check = ProvenanceCheck::of(*subject.home, subject.host.settings.nodeReleasePublicKey,
                                           ReleaseCrypto::platform());
    if (options.has(StandardOptions::json.name)) {
        deps.output.line(provenanceJson(check));
    } else {
        for (const auto& line : provenanceLines(check)) deps.output.line(line);
        const auto finding = provenanceFinding(check);
        if (finding.isProblem())
            deps.output.line(DoctorTexts::repair);
        else if (!finding.remedy.empty())
            deps.output.line(finding.remedy);
    }
    return check.isGood() ? ExitCode::done : ExitCode::failed;
}

}  // namespace tarnik
