#include "app/platform/macos/MacDefaults.h"

#include "app/platform/macos/CfText.h"

namespace tarnik {

namespace {

std::optional<std::string> text(const std::string& key) {
    const CfOwner value(::CFPreferencesCopyAppValue(CfText::of(key).get(), kCFPreferencesCurrentApplication));
    return CfText::text(value.get());
}

bool flag(const std::string& key) {
    return ::CFPreferencesGetAppBooleanValue(CfText::of(key).get(), kCFPreferencesCurrentApplication,
                                             nullptr);
}

void setFlag(const std::string& key) {
    ::CFPreferencesSetAppValue(CfText::of(key).get(), kCFBooleanTrue, kCFPreferencesCurrentApplication);
    ::CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

}  // namespace

UserDefaults macDefaults() {
    return {.text = text, .flag = flag, .setFlag = setFlag};
}

}  // namespace tarnik
