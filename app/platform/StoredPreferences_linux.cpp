#include "app/platform/StoredPreferences.h"

#include "core/foundation/Files.h"
#include "core/foundation/Json.h"

namespace tarnik {

// Reads the file of DefaultsFile. Like DefaultsFile, ignores a symbolic link.
std::optional<std::string> storedText(const SystemFolders& folders, const std::string& key) {
    constexpr std::size_t maxBytes = 65'536;
    const auto path = folders.preferences + "/tarnik/defaults.json";
    if (!isRegularFile(path)) return std::nullopt;
    const auto text = readFile(path, maxBytes);
    const auto json = text ? Json::parse(*text, maxBytes) : std::nullopt;
    const Json* value = json ? json->member(key) : nullptr;
    return value != nullptr ? value->asString() : std::nullopt;
}

}  // namespace tarnik
