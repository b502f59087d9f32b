#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

#include "app/CommandLine.h"
#include "app/ProcessSetup.h"
#include "app/ProgramStart.h"
#include "app/bundle/BuildKind.h"
#include "app/console/ConsoleProgram.h"
#include "app/desktop/DesktopProgram.h"
#include "app/model/SampleScreens.h"
#include "app/texts/ProgramTexts.h"
#include "core/driver/ProcessInspection.h"

namespace tarnik {
namespace {

int listScreens() {
    for (const auto& screen : sampleScreens()) std::puts(std::string(screen.name).c_str());
    return EXIT_SUCCESS;
}

// Replaces this process with tarnik-console, which maps no toolkit: the console may run for weeks on a
// machine without a display. Returns if tarnik-console is not installed beside this program.
void becomeConsole(char** argv) {
    if (const auto executable = ProcessInspection::executablePath(::getpid()))
        ::execv((*executable + "-console").c_str(), argv);
}

int run(char** argv, const std::vector<std::string>& words) {
    using Task = CommandLine::Task;
    const auto build = CommandLine::thisBuild();
    const auto line = CommandLine::parse(words, build);
    if (!line) return refuseStart(line.error());
    switch (line->task) {
        case Task::showHelp: std::fputs(ProgramTexts::usage(build).c_str(), stdout); return EXIT_SUCCESS;
        case Task::showVersion:
            std::puts(("tarnik " + std::string(programVersion())).c_str());
            return EXIT_SUCCESS;
        case Task::listScreens: return listScreens();
        case Task::showScreen:
        case Task::writeScreens: return runScreens(*line, argv[0]);
        case Task::openWindow:
            return runProgram(*line, argv[0],
                              [name = argv[0]](const auto& asked, HostEnvironment host, const auto& place) {
                                  return runDesktop(asked, std::move(host), place, name);
                              });
        case Task::runConsole: becomeConsole(argv); return runProgram(*line, argv[0], runConsole);
    }
    return EXIT_FAILURE;
}

}  // namespace
}  // namespace tarnik

int main(int argc, char** argv) {
    tarnik::setUpProcess();
    static char unnamed[] = "tarnik";
    static char* unnamedWords[] = {unnamed, nullptr};
    return tarnik::run(argc > 0 ? argv : unnamedWords,
                       std::vector<std::string>(argv + (argc > 0), argv + argc));
}
