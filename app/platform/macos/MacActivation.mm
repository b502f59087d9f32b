#include "app/platform/macos/MacActivation.h"

#import <AppKit/AppKit.h>

namespace tarnik::MacActivation {

void becomeAccessory() {
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

void comeToFront() {
    if (@available(macOS 14, *)) {
        [NSApp activate];
    } else {
        [NSApp activateIgnoringOtherApps:YES];
    }
}

}  // namespace tarnik::MacActivation
