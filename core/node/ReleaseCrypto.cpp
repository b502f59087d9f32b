#include "core/node/ReleaseCrypto.h"

#include "core/foundation/Crypto.h"

namespace tarnik {

ReleaseCrypto ReleaseCrypto::platform() {
    return {.verifyEd25519 = tarnik::verifyEd25519,
            .sha256Hex = tarnik::sha256Hex,
            .sha256HexOfFile = tarnik::sha256HexOfFile};
}

}  // namespace tarnik
