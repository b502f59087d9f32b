#include <algorithm>

#include "app/doctor/DoctorCheck.h"
#include "app/doctor/ProvenanceText.h"
#include "app/journal/Explanation.h"
#include "app/journal/JournalReader.h"
#include "core/node/NodeInstaller.h"
#include "core/node/Provenance.h"

namespace tarnik {
namespace {

// Returns false before the first install, which has a finding of its own.
bool wasInstalled(const Examination& examination) {
    const auto& home = *examination.subject().home;
    return home.isClaimed() && (exists(home.runtimeDir()) || exists(home.appDir()));
}

std::string wantedRuntime(const DoctorSubject& subject) {
    const auto runtime = NodeRuntimePin::runtimeFor(subject.host.platform, subject.host.settings.runtime);
    return runtime ? runtime->version : std::string(NodeRuntimePin::version);
}

std::optional<Finding> checkRuntime(Examination& examination) {
    if (!wasInstalled(examination)) return std::nullopt;
    const auto& subject = examination.subject();
    const auto path = subject.home->nodeBinary();
    if (!exists(path)) return finding(Severity::error, DoctorTexts::noRuntime);
    const auto version = examination.deps().runtimeVersion(path);
    if (!version) return finding(Severity::error, DoctorTexts::deadRuntime, path);
    if (*version != wantedRuntime(subject))
        return finding(Severity::warning, DoctorTexts::otherRuntime, path);
    return fine("Node.js " + *version + " runs.");
}

std::optional<Finding> checkPackage(Examination& examination) {
    if (!wasInstalled(examination)) return std::nullopt;
    const auto& home = *examination.subject().home;
    if (!exists(home.entry()) || !isExecutableFile(home.wrapper()))
        return finding(Severity::error, DoctorTexts::noPackage);
    const auto version = NodeInstaller(home, {}, {}).installedVersion();
    return fine("The helper " + version.value_or("(of an unknown version)") + " is installed.");
}

std::optional<Finding> checkProvenance(Examination& examination) {
    if (!wasInstalled(examination)) return std::nullopt;
    const auto& subject = examination.subject();
    return provenanceFinding(ProvenanceCheck::of(*subject.home, subject.host.settings.nodeReleasePublicKey,
                                                 examination.deps().crypto));
}

// Reports a child that ended several times in a row, unless that was long ago.
std::optional<Finding> checkRestarts(Examination& examination) {
    constexpr std::size_t events = 200;
    constexpr std::int64_t many = 3;
    constexpr auto recent = std::chrono::minutes(30);
    const auto now = examination.deps().now();
    const auto journal = readJournal(examination.subject().journal(), events);
    if (journal.empty() || now - journal.back().time > recent) return std::nullopt;
    for (const auto& explanation : explain(journal, now)) {
        const bool isChild = explanation.subject == Explanation::Subject::helper ||
                             explanation.subject == Explanation::Subject::driver;
        if (isChild && explanation.failures >= many)
            return finding(Severity::error, DoctorTexts::restarts, explanation.sentence);
    }
    return fine("Neither the helper nor the driver ends again and again.");
}

std::optional<Finding> checkAccount(Examination& examination) {
    if (!wasInstalled(examination)) return std::nullopt;
    if (!examination.subject().home->hasJoined()) return finding(Severity::note, DoctorTexts::notJoined);
    return fine("This computer is paired with an account.");
}

}  // namespace

std::vector<DoctorCheck> helperChecks() {
    return {
        {.code = "helper.runtime", .causes = {"home.claim", "home.disk"}, .run = checkRuntime},
        {.code = "helper.package", .causes = {"home.claim", "home.disk"}, .run = checkPackage},
        {.code = "helper.provenance",
         .causes = {"helper.runtime", "helper.package", "build.settings"},
         .run = checkProvenance},
        {.code = "helper.restarts", .causes = {"helper.provenance"}, .run = checkRestarts},
        {.code = "helper.account", .causes = {"home.claim"}, .run = checkAccount},
    };
}

}  // namespace tarnik
