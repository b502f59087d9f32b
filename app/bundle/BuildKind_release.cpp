#include "app/bundle/BuildKind.h"

namespace tarnik {

bool isDevelopmentBuild() {
    return false;
}

}  // namespace tarnik
