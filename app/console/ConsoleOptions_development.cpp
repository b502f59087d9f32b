#include "app/console/ConsoleOptions.h"

namespace tarnik {

ConsoleOptions::Build ConsoleOptions::thisBuild() {
    return Build::development;
}

}  // namespace tarnik
