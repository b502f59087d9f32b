// tarnik-window, the program with the toolkit. The program tarnik executes it.
#include "app/ProcessSetup.h"
#include "app/desktop/DesktopProgram.h"

int main(int, char** argv) {
    tarnik::setUpProcess();
    return tarnik::runWindowPart(argv);
}
