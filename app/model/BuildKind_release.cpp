#include "app/model/BuildKind.h"

namespace tarnik {

bool isDevelopmentBuild() {
    return false;
}

}  // namespace tarnik
