#import <AppKit/AppKit.h>

#include "app/platform/macos/MacOperations.h"

namespace tarnik {

void becomeAccessory() {
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

void activateApplication() {
    if (@available(macOS 14, *)) {
        [NSApp activate];
    } else {
        [NSApp activateIgnoringOtherApps:YES];
    }
}

}  // namespace tarnik
