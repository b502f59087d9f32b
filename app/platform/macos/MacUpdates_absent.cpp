#include "app/platform/macos/MacOperations.h"

namespace tarnik {

UpdateFramework macUpdates() {
    return {};
}

}  // namespace tarnik
