#include "app/commands/Commands.h"
#include "app/console/ServeProgram.h"
#include "app/options/StandardOptions.h"

namespace tarnik {

ExitCode runServeCommand(const CommandOptions& options, const CommandDeps&) {
    CommandLine line;
    line.nodeHome = options.value(StandardOptions::nodeHome.name);
    line.bundle = options.value(StandardOptions::bundle.name);
    line.keepAwake = options.value(StandardOptions::keepAwake.name);
    if (const auto seconds = options.number(StandardOptions::connectedAfter.name))
        line.connectedAfter = Seconds(*seconds);
    return static_cast<ExitCode>(runProgram(line, "tarnik", runServe));
}

}  // namespace tarnik
