#include "app/model/UpdateSettings.h"

#include "app/model/InfoText.h"
#include "core/foundation/Files.h"
#include "core/foundation/PropertyList.h"

namespace tarnik {

UpdateSettings UpdateSettings::fromBundle(const std::string& bundlePath) {
    const auto bytes = readFile(bundlePath + "/Contents/Info.plist", PropertyList::maxBytes);
    const auto info = PropertyList::parse(bytes.value_or(""));
    if (!info) return {};
    return {.feedURL = infoText(*info, "SUFeedURL"), .publicKey = infoText(*info, "SUPublicEDKey")};
}

}  // namespace tarnik
