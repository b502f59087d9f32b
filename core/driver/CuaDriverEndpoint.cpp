#include "core/driver/CuaDriverEndpoint.h"

#include "core/foundation/Json.h"

namespace tarnik {

namespace {

bool isValid(const std::string& path) {
    return path.starts_with('/') && !path.contains('\0');
}

}  // namespace

std::optional<std::string> CuaDriverEndpoint::environmentValue() const {
    if (!isValid(socketPath) || !isValid(binaryPath)) return std::nullopt;
    std::string json = R"({"v":1,"socketPath":)" + quotedJson(socketPath) + R"(,"binaryPath":)" +
                       quotedJson(binaryPath) + "}";
    if (json.size() > maxBytes) return std::nullopt;
    return json;
}

}  // namespace tarnik
