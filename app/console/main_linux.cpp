// tarnik-console: what `tarnik --console` becomes, the same machine without the toolkit.
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/ProcessGround.h"
#include "app/ProgramStart.h"
#include "app/console/ConsoleProgram.h"

int main(int argc, char** argv) {
    using namespace tarnik;
    layProcessGround();
    const auto line = CommandLine::parse(std::vector<std::string>(argv + (argc > 0), argv + argc),
                                         CommandLine::thisBuild());
    if (!line) return refuse(line.error());
    if (line->task != CommandLine::Task::runConsole)
        return refuse("this is the part for --console; start tarnik");
    return runMachine(*line, "tarnik", runConsole);
}
