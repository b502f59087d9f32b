// tarnik-console, the program without the toolkit. The program tarnik executes it.
#include "app/ProcessSetup.h"
#include "app/commands/HeavyCommands.h"

int main(int, char** argv) {
    tarnik::setUpProcess();
    return tarnik::runConsolePart(argv);
}
