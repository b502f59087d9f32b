#include "app/model/BuildKind.h"

namespace tarnik {

bool isDevelopmentBuild() {
    return true;
}

}  // namespace tarnik
