#include "app/platform/macos/MacUpdates.h"

namespace tarnik {

UpdateFramework macUpdates(SystemLog) {
    return {};
}

}  // namespace tarnik
