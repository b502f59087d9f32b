#include <utility>

#import <Sparkle/Sparkle.h>

#include "app/platform/macos/CocoaText.h"
#include "app/platform/macos/MacOperations.h"

// Owns the controller and is its delegate. The controller references its delegate weakly.
@interface TarnikUpdates : NSObject <SPUUpdaterDelegate>
@property(nonatomic, readonly, strong) SPUStandardUpdaterController* controller;
@property(nonatomic) BOOL hasStarted;
- (instancetype)initWithHandler:(tarnik::UpdateFramework::WillInstallOnQuit)handler;
@end

@implementation TarnikUpdates {
    tarnik::UpdateFramework::WillInstallOnQuit _handler;
}

- (instancetype)initWithHandler:(tarnik::UpdateFramework::WillInstallOnQuit)handler {
    self = [super init];
    if (self) {
        _handler = std::move(handler);
        _controller = [[SPUStandardUpdaterController alloc] initWithStartingUpdater:NO
                                                                    updaterDelegate:self
                                                                 userDriverDelegate:nil];
    }
    return self;
}

- (BOOL)updater:(SPUUpdater*)updater
       willInstallUpdateOnQuit:(SUAppcastItem*)item
    immediateInstallationBlock:(void (^)(void))immediateInstallHandler {
    (void)updater;
    void (^install)(void) = [immediateInstallHandler copy];
    return _handler(tarnik::plainText(item.displayVersionString), [install] { install(); });
}

@end

namespace tarnik {

namespace {

// Starts the updater without an alert. The controller's own start would show an alert at each failed start.
void start(TarnikUpdates* updates, const SystemLog& log) {
    NSError* error = nil;
    updates.hasStarted = [updates.controller.updater startUpdater:&error];
    if (!updates.hasStarted) log("no updates: " + plainText(error.localizedDescription));
}

// Checks for updates. If the updater still can't start, the controller shows the reason.
void check(TarnikUpdates* updates) {
    if (!updates.hasStarted) updates.hasStarted = [updates.controller.updater startUpdater:nil];
    if (updates.hasStarted) {
        [updates.controller checkForUpdates:nil];
    } else {
        [updates.controller startUpdater];
    }
}

UpdateFramework::Controller makeController(UpdateFramework::WillInstallOnQuit handler, const SystemLog& log) {
    TarnikUpdates* updates = [[TarnikUpdates alloc] initWithHandler:std::move(handler)];
    return {.start = [updates, log] { start(updates, log); },
            .setAutomaticallyChecks =
                [updates] { updates.controller.updater.automaticallyChecksForUpdates = YES; },
            .setAutomaticallyDownloads =
                [updates] { updates.controller.updater.automaticallyDownloadsUpdates = YES; },
            .checkForUpdates = [updates] { check(updates); }};
}

}  // namespace

UpdateFramework macUpdates(SystemLog log) {
    return {.makeController = [log = std::move(log)](UpdateFramework::WillInstallOnQuit handler) {
        return makeController(std::move(handler), log);
    }};
}

}  // namespace tarnik
