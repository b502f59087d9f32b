#include "app/bundle/BuildKind.h"

namespace tarnik {

bool isDevelopmentBuild() {
    return true;
}

}  // namespace tarnik
