#include "core/node/InstalledVersion.h"

#include "core/foundation/Files.h"
#include "core/foundation/Json.h"

namespace tarnik {

namespace {

constexpr std::size_t versionFileBytes = 65'536;

}  // namespace

std::optional<std::string> installedVersion(const NodeHome& home) {
    const std::string path = home.appDir() + "/lib/node_modules/openclaw/tarnik-node.json";
    const UniqueFd file = openRegularFile(path);
    if (!file) return std::nullopt;
    const auto text = readFile(path, versionFileBytes);
    if (!text) return "";
    const auto json = Json::parse(*text, versionFileBytes);
    const Json* version = json ? json->member("version") : nullptr;
    return version != nullptr ? version->asString() : std::nullopt;
}

}  // namespace tarnik
