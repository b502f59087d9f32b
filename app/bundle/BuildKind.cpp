#include "app/bundle/BuildKind.h"

namespace tarnik {

std::string_view programVersion() {
    return TARNIK_VERSION;
}

}  // namespace tarnik
