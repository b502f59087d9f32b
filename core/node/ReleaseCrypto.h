#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// The cryptography that releases are checked with. From any thread.
struct ReleaseCrypto {
    // Whether the signature is the key's (32 bytes) for the message; no for a key that is none.
    std::function<bool(std::string_view publicKey, std::string_view signature, std::string_view message)>
        verifyEd25519;
    std::function<std::string(std::string_view bytes)> sha256Hex;  // lower case
    // None when the file can't be read.
    std::function<std::optional<std::string>(const std::string& path)> sha256HexOfFile;

    static ReleaseCrypto platform();
};

}  // namespace tarnik
