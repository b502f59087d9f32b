#include <cerrno>
#include <csignal>
#include <utility>

#import <AppKit/AppKit.h>
#include <unistd.h>

#include "app/platform/CopyOrder.h"
#include "app/platform/macos/CocoaText.h"
#include "app/platform/macos/MacOperations.h"
#include "app/platform/macos/ShowWindowNotice.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/process/MacProcesses.h"

// NSRunningApplication may be used on any thread. Its list can still contain processes that have ended, so
// each operation checks the process table first.
namespace tarnik {

namespace {

std::vector<OtherCopy> startedBefore() {
    const auto table = MacProcesses::table();
    if (!table) return {};
    std::vector<OtherCopy> copies;
    @autoreleasepool {
        NSString* identifier = cocoaText(TarnikIdentity::bundleIdentifier);
        for (NSRunningApplication* each in
             [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
            copies.push_back({.pid = each.processIdentifier,
                              .started = std::nullopt,
                              .bundlePath = plainText(each.bundleURL.path)});
        }
    }
    return CopyOrder::startedBefore(::getpid(), std::move(copies), *table);
}

bool isRunning(const OtherCopy& copy) {
    if (copy.pid < 2 || (::kill(copy.pid, 0) != 0 && errno == ESRCH)) return false;
    const auto table = MacProcesses::table();
    return !table || CopyOrder::contains(*table, copy);
}

// Returns an operation that calls `action` unless the process has ended or its process id was reused.
std::function<void(const OtherCopy&)> whileRunning(void (*action)(NSRunningApplication*)) {
    return [action](const OtherCopy& copy) {
        if (!isRunning(copy)) return;
        @autoreleasepool {
            NSRunningApplication* application =
                [NSRunningApplication runningApplicationWithProcessIdentifier:copy.pid];
            if (application) action(application);
        }
    };
}

void terminate(NSRunningApplication* application) {
    [application terminate];
}

void forceTerminate(NSRunningApplication* application) {
    [application forceTerminate];
}

// Since macOS 14 a program can activate another one only after it has yielded, on the main thread. The other
// copy also activates itself when it receives the request to show its window.
void activate(NSRunningApplication* application) {
    [[NSOperationQueue mainQueue] addOperationWithBlock:^{
      if (@available(macOS 14, *)) {
          [NSApp yieldActivationToApplication:application];
          [application activateFromApplication:[NSRunningApplication currentApplication] options:0];
      } else {
          [application activateWithOptions:NSApplicationActivateIgnoringOtherApps];
      }
    }];
}

}  // namespace

OtherCopies macCopies() {
    return {.startedBefore = startedBefore,
            .isRunning = isRunning,
            .terminate = whileRunning(terminate),
            .forceTerminate = whileRunning(forceTerminate),
            .activate = whileRunning(activate),
            .postShowWindow = ShowWindowNotice::post};
}

}  // namespace tarnik
