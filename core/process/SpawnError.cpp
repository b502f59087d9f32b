#include "core/process/SpawnError.h"

#include "core/foundation/ErrorText.h"

namespace tarnik {

std::string describe(const SpawnError& error) {
    return error.call + " failed: " + errorText(error.code);
}

}  // namespace tarnik
