#include "app/commands/Commands.h"
#include "app/commands/RunningProgram.h"

namespace tarnik {

ExitCode runOpen(const CommandOptions&, const CommandDeps& deps) {
    const auto result = RunningProgram::ask(deps, {.kind = ControlRequest::Kind::open});
    return result ? ExitCode::done : result.error();
}

}  // namespace tarnik
