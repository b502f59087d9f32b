#include <utility>

#include "app/commands/Commands.h"
#include "app/commands/RunningProgram.h"
#include "app/texts/RunningTexts.h"
#include "core/driver/ProcessInspection.h"

namespace tarnik {
namespace {

constexpr Seconds longestQuit = Seconds(60);  // stopping everything takes up to 40 s

}  // namespace

ExitCode runQuit(const CommandOptions& options, const CommandDeps& deps) {
    const auto result = RunningProgram::ask(deps, {.kind = ControlRequest::Kind::quit});
    if (!result) return result.error();
    if (!options.has("wait")) {
        deps.output.line(RunningTexts::quitting);
        return ExitCode::done;
    }
    const Json* pid = result->member("pid");
    const auto process = pid != nullptr ? pid->asInteger() : std::nullopt;
    if (!process || !std::in_range<pid_t>(*process))
        return RunningProgram::report(deps, ControlClient::Failure::malformed);
    if (!ProcessInspection::waitForExit(static_cast<pid_t>(*process), longestQuit)) {
        deps.output.error(RunningTexts::stillRuns);
        return ExitCode::failed;
    }
    deps.output.line(RunningTexts::hasQuit);
    return ExitCode::done;
}

}  // namespace tarnik
