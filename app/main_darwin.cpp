// The only executable of the bundle. It contains all parts of the program.
#include "app/ProcessSetup.h"
#include "app/commands/Front.h"
#include "app/commands/HeavyCommands.h"
#include "app/desktop/DesktopProgram.h"

int main(int argc, char** argv) {
    using namespace tarnik;
    setUpProcess();
    return runFront(argc, argv, {.window = runWindowPart, .console = runConsolePart});
}
