#include "app/platform/macos/MacActivation.h"

#import <AppKit/AppKit.h>

namespace tarnik::MacActivation {

void becomeAccessory() {
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

void comeToFront() {
    [NSApp activateIgnoringOtherApps:YES];
}

}  // namespace tarnik::MacActivation
