#include <utility>

#import <Sparkle/Sparkle.h>

#include "app/platform/macos/CocoaText.h"
#include "app/platform/macos/MacOperations.h"

// Owns the controller and is its delegate. The controller references its delegate weakly.
@interface TarnikUpdates : NSObject <SPUUpdaterDelegate>
@property(nonatomic, readonly, strong) SPUStandardUpdaterController* controller;
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

// The updater's own start returns the error. The controller's start would show an alert.
std::expected<void, std::string> start(TarnikUpdates* updates) {
    NSError* error = nil;
    if ([updates.controller.updater startUpdater:&error]) return {};
    return std::unexpected(plainText(error.localizedDescription));
}

UpdateFramework::Controller makeController(UpdateFramework::WillInstallOnQuit handler) {
    TarnikUpdates* updates = [[TarnikUpdates alloc] initWithHandler:std::move(handler)];
    return {.start = [updates] { return start(updates); },
            .setAutomaticallyChecks =
                [updates](bool isOn) { updates.controller.updater.automaticallyChecksForUpdates = isOn; },
            .setAutomaticallyDownloads =
                [updates](bool isOn) { updates.controller.updater.automaticallyDownloadsUpdates = isOn; },
            .checkForUpdates = [updates] { [updates.controller checkForUpdates:nil]; },
            .showStartFailure = [updates] { [updates.controller startUpdater]; }};
}

}  // namespace

UpdateFramework macUpdates() {
    return {.makeController = makeController};
}

}  // namespace tarnik
