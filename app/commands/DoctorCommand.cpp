#include <algorithm>
#include <iterator>
#include <string>

#include "app/commands/Commands.h"
#include "app/commands/ExaminedInstallation.h"
#include "app/commands/TextWrap.h"
#include "app/doctor/FindingText.h"
#include "app/options/StandardOptions.h"
#include "app/texts/DoctorTexts.h"

namespace tarnik {
namespace {

using Style = CommandOutput::Style;

Style styleOf(Severity severity) {
    switch (severity) {
        case Severity::ok: return Style::green;
        case Severity::note: return Style::dim;
        case Severity::warning: return Style::yellow;
        case Severity::error: break;
    }
    return Style::red;
}

// Writes "error    The sentence. [code]" and the remedy below the sentence.
void show(CommandOutput& output, const Finding& finding) {
    constexpr std::size_t column = 9;
    const std::size_t width = output.width() > 2 * column ? output.width() - column : 0;
    const std::string code = finding.isProblem() ? "[" + finding.code + "]" : "";
    auto lines = wrappedLines(printable(finding.sentence) + (code.empty() ? "" : " " + code), width);
    lines.back().replace(lines.back().size() - code.size(), code.size(), output.styled(Style::dim, code));
    if (!finding.remedy.empty() && finding.severity != Severity::ok) {
        auto remedy = wrappedLines(printable(finding.remedy), width);
        std::ranges::move(remedy, std::back_inserter(lines));
    }
    const std::string name(nameOf(finding.severity));
    auto text = output.styled(styleOf(finding.severity), name) + std::string(column - name.size(), ' ');
    for (const auto& line : lines) {
        if (&line != lines.data()) text += std::string(column, ' ');
        text += line + "\n";
    }
    output.write(text);
}

}  // namespace

ExitCode runDoctor(const CommandOptions& options, const CommandDeps& deps) {
    const auto subject = examinedInstallation(options, deps.run);
    const bool wantsJson = options.has(StandardOptions::json.name);
    const BackgroundTasks tasks;
    const auto effects = examinationDeps(subject, statusOfRunningCopy(deps.run), tasks);
    const auto findings = examine(subject, effects, [&](const Finding& finding) {
        if (!wantsJson) show(deps.output, finding);
    });
    const auto problems = std::ranges::count_if(findings, &Finding::isProblem);
    if (wantsJson) {
        deps.output.line(findingsJson(findings));
    } else {
        deps.output.line("");
        deps.output.line(problems == 0   ? DoctorTexts::allIsWell
                         : problems == 1 ? DoctorTexts::oneProblem
                                         : DoctorTexts::manyProblems + std::to_string(problems) + ".");
    }
    return endWithProbes(problems == 0 ? ExitCode::done : ExitCode::failed, tasks, deps.output);
}

}  // namespace tarnik
