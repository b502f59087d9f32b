#include "app/control/ControlFolder.h"

namespace tarnik::ControlFolder {

std::string socketPath(const std::string& folder) {
    return folder + "/" + socketName;
}

}  // namespace tarnik::ControlFolder
