#include <memory>

#import <AppKit/AppKit.h>

#include "app/platform/macos/MacOperations.h"

namespace tarnik {

void becomeAccessory() {
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

// -activate of macOS 14 is a request, which leaves the window of an accessory behind other windows. The older
// call works on all systems.
void activateApplication() {
    [NSApp activateIgnoringOtherApps:YES];
}

// A modal window makes AppKit refuse the end of the program, and so the end of the session. The property is
// set for each window when it appears, because Qt creates the windows. The observers are never removed.
void letModalWindowsQuit() {
    for (NSNotificationName name in
         @[ NSWindowDidBecomeKeyNotification, NSWindowDidChangeOcclusionStateNotification ]) {
        [[NSNotificationCenter defaultCenter]
            addObserverForName:name
                        object:nil
                         queue:nil
                    usingBlock:^(NSNotification* notification) {
                      NSWindow* window = notification.object;
                      [window setPreventsApplicationTerminationWhenModal:NO];
                    }];
    }
}

// Ends the last activity when the last copy of the operation is destroyed.
std::function<void(Activity)> macActivity() {
    struct Token {
        id<NSObject> activity = nil;  // nil while idle

        Token() = default;
        ~Token() { end(); }
        Token(const Token&) = delete;
        Token& operator=(const Token&) = delete;

        void end() {
            if (activity) [[NSProcessInfo processInfo] endActivity:activity];
            activity = nil;
        }
    };
    return [token = std::make_shared<Token>()](Activity level) {
        token->end();
        if (level == Activity::idle) return;
        token->activity = [[NSProcessInfo processInfo]
            beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                              reason:@"The helper of tarnik is running."];
    };
}

}  // namespace tarnik
