#include "app/platform/StoredPreferences.h"

#include "app/platform/CfText.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

namespace {

// Returns our preferences domain. A program outside a bundle would use another domain by default.
CfOwner<CFStringRef> domain() {
    return CfText::of(TarnikIdentity::bundleIdentifier);
}

std::optional<std::string> text(const std::string& key) {
    const CfOwner value(::CFPreferencesCopyAppValue(CfText::of(key).get(), domain().get()));
    return CfText::text(value.get());
}

bool flag(const std::string& key) {
    return ::CFPreferencesGetAppBooleanValue(CfText::of(key).get(), domain().get(), nullptr);
}

void setFlag(const std::string& key) {
    ::CFPreferencesSetAppValue(CfText::of(key).get(), kCFBooleanTrue, domain().get());
    ::CFPreferencesAppSynchronize(domain().get());
}

void clearFlag(const std::string& key) {
    ::CFPreferencesSetAppValue(CfText::of(key).get(), nullptr, domain().get());
    ::CFPreferencesAppSynchronize(domain().get());
}

}  // namespace

UserDefaults storedPreferences(const SystemFolders&, const SystemLog&) {
    return {.text = text, .flag = flag, .setFlag = setFlag, .clearFlag = clearFlag};
}

}  // namespace tarnik
