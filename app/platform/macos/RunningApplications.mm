#include "app/platform/macos/RunningApplications.h"

#import <AppKit/AppKit.h>

#include "app/platform/macos/CocoaText.h"

namespace tarnik::RunningApplications {

namespace {

NSRunningApplication* application(pid_t pid) {
    return [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
}

}  // namespace

std::vector<Application> withIdentifier(const std::string& bundleIdentifier) {
    @autoreleasepool {
        std::vector<Application> found;
        for (NSRunningApplication* each in
             [NSRunningApplication runningApplicationsWithBundleIdentifier:cocoaText(bundleIdentifier)]) {
            found.push_back({each.processIdentifier, plainText(each.bundleURL.path)});
        }
        return found;
    }
}

void askToQuit(pid_t pid) {
    @autoreleasepool {
        [application(pid) terminate];
    }
}

void forceToQuit(pid_t pid) {
    @autoreleasepool {
        [application(pid) forceTerminate];
    }
}

void bringToFront(pid_t pid) {
    @autoreleasepool {
        [application(pid) activateWithOptions:NSApplicationActivateIgnoringOtherApps];
    }
}

}  // namespace tarnik::RunningApplications
