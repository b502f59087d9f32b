#include "app/uninstall/UninstallPlan.h"

#include <CoreFoundation/CoreFoundation.h>

#include "app/texts/UninstallTexts.h"
#include "core/foundation/Files.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

// Removes the preferences through the system, whose cache would otherwise write the file again.
std::expected<void, std::string> removePreferences() {
    const CFStringRef domain =
        ::CFStringCreateWithCString(nullptr, TarnikIdentity::bundleIdentifier.data(), kCFStringEncodingUTF8);
    const CFArrayRef keys =
        ::CFPreferencesCopyKeyList(domain, kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    if (keys != nullptr) {
        ::CFPreferencesSetMultiple(nullptr, keys, domain, kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
        ::CFRelease(keys);
    }
    const bool isDone =
        ::CFPreferencesSynchronize(domain, kCFPreferencesCurrentUser, kCFPreferencesAnyHost) != 0;
    ::CFRelease(domain);
    if (!isDone) return std::unexpected(std::string(UninstallTexts::preferencesKept));
    return {};
}

}  // namespace

// The system removes the login item when the application is moved to the Trash.
void addDesktopItems(UninstallPlan& plan, const SystemFolders& folders) {
    const auto path = folders.preferences + "/" + std::string(TarnikIdentity::bundleIdentifier) + ".plist";
    if (!isRegularFile(path)) return;
    plan.items.push_back({path, UninstallTexts::preferences, removePreferences});
    addFile(plan, path, UninstallTexts::preferencesFile);
}

}  // namespace tarnik
