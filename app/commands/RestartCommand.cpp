#include "app/commands/Commands.h"
#include "app/commands/RunningProgram.h"
#include "app/texts/RunningTexts.h"

namespace tarnik {
namespace {

constexpr Seconds longestRestart = Seconds(45);  // stopping the helper takes up to 20 s, after other calls

}  // namespace

ExitCode runRestart(const CommandOptions&, const CommandDeps& deps) {
    const auto result = RunningProgram::ask(deps, {.kind = ControlRequest::Kind::restart}, longestRestart);
    if (!result) return result.error();
    deps.output.line(RunningTexts::restarted);
    return ExitCode::done;
}

}  // namespace tarnik
