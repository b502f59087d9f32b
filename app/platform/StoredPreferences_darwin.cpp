#include "app/platform/StoredPreferences.h"

#include "core/foundation/Files.h"
#include "core/foundation/PropertyList.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

// The system writes changes to this file with a delay.
std::optional<std::string> storedText(const SystemFolders& folders, const std::string& key) {
    const auto path = folders.preferences + "/" + std::string(TarnikIdentity::bundleIdentifier) + ".plist";
    const auto list = PropertyList::parse(readFile(path, PropertyList::maxBytes).value_or(""));
    const PropertyList* value = list ? list->entry(key) : nullptr;
    return value != nullptr ? value->asString() : std::nullopt;
}

}  // namespace tarnik
