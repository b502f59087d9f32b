// tarnik, the program that users start. It runs the quick commands itself, so that they load no toolkit. It
// executes its siblings for all other work.
#include <string>

#include <unistd.h>

#include "app/ProcessSetup.h"
#include "app/ProgramStart.h"
#include "app/commands/Front.h"
#include "app/options/ExitCode.h"
#include "app/texts/ProgramTexts.h"
#include "core/process/MacProcesses.h"

namespace {

// Replaces this process with the executable `name` of the same folder. On failure, prints `missing` and
// returns the exit status.
int execute(const std::string& name, char** argv, const char* missing) {
    const auto self = tarnik::MacProcesses::executablePath(::getpid()).value_or("");
    ::execv((self.substr(0, self.rfind('/') + 1) + name).c_str(), argv);
    tarnik::printError(missing);
    return exitStatus(tarnik::ExitCode::failed);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tarnik;
    setUpProcess();
    const auto window = [](char** words) { return execute("tarnik-window", words, ProgramTexts::noWindow); };
    const auto console = [](char** words) {
        return execute("tarnik-console", words, ProgramTexts::noConsole);
    };
    return runFront(argc, argv, {.window = window, .console = console});
}
