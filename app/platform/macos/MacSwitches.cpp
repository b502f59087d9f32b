#include <array>

#include <ApplicationServices/ApplicationServices.h>

#include "app/platform/CfOwner.h"
#include "app/platform/macos/MacOperations.h"

namespace tarnik {

namespace {

bool isOn(Switch which) {
    switch (which) {
        case Switch::accessibility: return ::AXIsProcessTrusted();
        case Switch::screenRecording: break;
    }
    return ::CGPreflightScreenCaptureAccess();
}

bool promptForAccessibility() {
    std::array<const void*, 1> keys{kAXTrustedCheckOptionPrompt};
    std::array<const void*, 1> values{kCFBooleanTrue};
    const CfOwner options(::CFDictionaryCreate(nullptr, keys.data(), values.data(), keys.size(),
                                               &kCFTypeDictionaryKeyCallBacks,
                                               &kCFTypeDictionaryValueCallBacks));
    return ::AXIsProcessTrustedWithOptions(options.get());
}

bool prompt(Switch which) {
    switch (which) {
        case Switch::accessibility: return promptForAccessibility();
        case Switch::screenRecording: break;
    }
    return ::CGRequestScreenCaptureAccess();
}

}  // namespace

SwitchOperations macSwitches() {
    return {.isOn = isOn, .prompt = prompt, .openSettings = [](Switch which) {
                openInWorkspace(settingsURL(which));
            }};
}

}  // namespace tarnik
