#include "app/doctor/Doctor.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "app/doctor/DoctorCheck.h"
#include "app/journal/Journal.h"

namespace tarnik {
namespace {

std::vector<DoctorCheck> allChecks() {
    std::vector<DoctorCheck> all;
    for (const auto& table : {buildChecks(), policyChecks(), homeChecks(), helperChecks(), driverChecks(),
                              desktopChecks(), networkChecks()})
        all.insert(all.end(), table.begin(), table.end());
    return all;
}

std::string quotedForShell(const std::string& text) {
    std::string quoted = "'";
    for (const char character : text) quoted += character == '\'' ? R"('\'')" : std::string(1, character);
    return quoted + "'";
}

}  // namespace

std::string DoctorSubject::journal() const {
    return folders.stateFolder() + "/" + std::string(Journal::fileName);
}

Finding fine(std::string sentence) {
    return {.code = {}, .severity = Severity::ok, .sentence = std::move(sentence), .remedy = {}};
}

Finding finding(Severity severity, const DoctorTexts::Text& text, const std::string& subject) {
    std::string remedy = text.remedy;
    constexpr std::string_view placeholder = "FOLDER";
    if (const auto at = remedy.find(placeholder); at != std::string::npos)
        remedy.replace(at, placeholder.size(), quotedForShell(subject));
    return {
        .code = {}, .severity = severity, .sentence = subject + text.sentence, .remedy = std::move(remedy)};
}

std::vector<Finding> examine(const DoctorSubject& subject, const DoctorDeps& deps,
                             const std::function<void(const Finding&)>& onFinding) {
    Examination examination(subject, deps);
    std::vector<Finding> findings;
    std::set<std::string_view> broken;  // checks that found an error or were hidden
    for (const auto& check : allChecks()) {
        if (std::ranges::any_of(check.causes, [&](auto cause) { return broken.contains(cause); })) {
            broken.insert(check.code);
            continue;
        }
        auto found = check.run(examination);
        if (!found) continue;
        found->code = check.code;
        if (found->severity == Severity::error) broken.insert(check.code);
        onFinding(*found);
        findings.push_back(*std::move(found));
    }
    return findings;
}

}  // namespace tarnik
