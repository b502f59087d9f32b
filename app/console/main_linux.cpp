// tarnik-console, which tarnik executes: the program without the toolkit.
#include "app/ProcessSetup.h"
#include "app/commands/HeavyCommands.h"

int main(int, char** argv) {
    tarnik::setUpProcess();
    return tarnik::runConsolePart(argv);
}
