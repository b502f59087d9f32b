#include "app/ProgramVersion.h"

namespace tarnik {

std::string_view programVersion() {
    return TARNIK_VERSION;
}

}  // namespace tarnik
