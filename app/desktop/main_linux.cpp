// tarnik-window, which tarnik executes: the program with the toolkit.
#include "app/ProcessSetup.h"
#include "app/desktop/DesktopProgram.h"

int main(int, char** argv) {
    tarnik::setUpProcess();
    return tarnik::runWindowPart(argv);
}
