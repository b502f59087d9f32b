// The texts of this folder that are shown to the user.
#include "core/pairing/PairingSession.h"

namespace tarnik {

std::string describe(PairingFailure failure) {
    switch (failure) {
        case PairingFailure::notInstalled: return "tarnik's helper isn't installed on this Mac yet.";
        case PairingFailure::busy: break;
    }
    return "This Mac is already connecting with another link. Finish or cancel that one first.";
}

std::string describe(const PairingError& error) {
    return std::visit([](const auto& one) { return describe(one); }, error);
}

}  // namespace tarnik
