#include "app/console/ConsoleOptions.h"

namespace tarnik {

ConsoleOptions::Build ConsoleOptions::thisBuild() {
    return Build::release;
}

}  // namespace tarnik
