// app/texts/LinkTexts.h has the sentences about links that the service refuses.
#include "core/pairing/PairingFailureTexts.h"

#include "core/pairing/PairingSession.h"

namespace tarnik {

std::string describe(PairingFailure failure) {
    switch (failure) {
        case PairingFailure::notInstalled: return std::string(PairingFailureTexts::notInstalled);
        case PairingFailure::busy: break;
    }
    return std::string(PairingFailureTexts::busy);
}

std::string describe(const PairingError& error) {
    return std::visit([](const auto& one) { return describe(one); }, error);
}

}  // namespace tarnik
