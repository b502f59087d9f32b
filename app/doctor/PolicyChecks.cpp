#include "app/doctor/DoctorCheck.h"
#include "app/texts/PolicyTexts.h"

namespace tarnik {
namespace {

namespace Texts = PolicyTexts;

const PolicyReading& readingOf(const Examination& examination) {
    return examination.subject().host.policy;
}

std::optional<Finding> checkDamage(Examination& examination) {
    const auto& damage = readingOf(examination).damage;
    if (!damage) return std::nullopt;
    return finding(Severity::error, Texts::damagedRemedy, *damage);
}

std::optional<Finding> checkIgnored(Examination& examination) {
    std::string all;
    for (const auto& sentence : readingOf(examination).ignored) {
        if (!all.empty()) all += ' ';
        all += sentence;
    }
    if (all.empty()) return std::nullopt;
    return finding(Severity::warning, Texts::ignoredRemedy, all);
}

std::optional<Finding> checkSettings(Examination& examination) {
    const auto entries = readingOf(examination).policy.entries();
    if (entries.empty()) return std::nullopt;
    return fine(Texts::inForce + textOf(entries) + ".");
}

// The running program keeps the settings of its start.
std::optional<Finding> checkChange(Examination& examination) {
    const auto copy = examination.deps().runningCopy();
    if (!copy || !copy->policy) return std::nullopt;
    if (*copy->policy == textOf(readingOf(examination).policy.entries())) return std::nullopt;
    return finding(Severity::note, Texts::changed);
}

}  // namespace

std::vector<DoctorCheck> policyChecks() {
    return {{.code = "policy.damaged", .causes = {}, .run = checkDamage},
            {.code = "policy.ignored", .causes = {}, .run = checkIgnored},
            {.code = "policy.inForce", .causes = {}, .run = checkSettings},
            {.code = "policy.changed", .causes = {}, .run = checkChange}};
}

}  // namespace tarnik
