#include "app/model/ChosenHome.h"

#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

std::expected<NodeHome, NodeHome::ResolveError> chosenHome(const UserDefaults& defaults,
                                                           const std::string& userFolder) {
    return NodeHome::resolve(defaults.text(std::string(TarnikIdentity::nodeHomeDefaultsKey)), userFolder);
}

}  // namespace tarnik
