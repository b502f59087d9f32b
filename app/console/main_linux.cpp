// tarnik-console, which `tarnik --console` executes: the same application without the toolkit.
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/ProcessSetup.h"
#include "app/ProgramStart.h"
#include "app/console/ConsoleProgram.h"
#include "app/texts/ProgramTexts.h"

int main(int argc, char** argv) {
    using namespace tarnik;
    setUpProcess();
    const auto line = CommandLine::parse(std::vector<std::string>(argv + (argc > 0), argv + argc),
                                         CommandLine::thisBuild());
    if (!line) return refuseStart(line.error());
    if (line->task != CommandLine::Task::runConsole) return refuseStart(ProgramTexts::onlyForConsole);
    return runProgram(*line, "tarnik", runConsole);
}
