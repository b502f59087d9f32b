#include "app/relocation/BundleVersion.h"

#include "app/model/InfoText.h"
#include "core/foundation/Files.h"
#include "core/foundation/PropertyList.h"

namespace tarnik {

std::optional<std::string> bundleVersion(const std::string& bundle) {
    const auto bytes = readFile(bundle + "/Contents/Info.plist", PropertyList::maxBytes);
    const auto info = PropertyList::parse(bytes.value_or(""));
    if (!info) return std::nullopt;
    if (auto shown = infoText(*info, "CFBundleShortVersionString")) return shown;
    return infoText(*info, "CFBundleVersion");
}

}  // namespace tarnik
