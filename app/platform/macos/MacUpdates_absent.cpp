#include "app/platform/macos/MacOperations.h"

namespace tarnik {

UpdateFramework macUpdates(SystemLog) {
    return {};
}

}  // namespace tarnik
