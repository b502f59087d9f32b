#import <ServiceManagement/ServiceManagement.h>

#include "app/platform/macos/MacOperations.h"

namespace tarnik {

namespace {

// The system also reports RequiresApproval after the user has turned the item off in its settings.
LoginItemState state() {
    @autoreleasepool {
        switch (SMAppService.mainAppService.status) {
            case SMAppServiceStatusEnabled: return LoginItemState::on;
            case SMAppServiceStatusRequiresApproval: return LoginItemState::waiting;
            case SMAppServiceStatusNotRegistered:
            case SMAppServiceStatusNotFound: return LoginItemState::off;
        }
        return LoginItemState::off;  // a status of a later system
    }
}

// For an item that the user has turned off, the system refuses this or leaves the item off.
bool registerItem() {
    @autoreleasepool {
        return [SMAppService.mainAppService registerAndReturnError:nil];
    }
}

std::expected<void, std::string> choose(LoginItemChoice choice) {
    @autoreleasepool {
        NSError* error = nil;
        SMAppService* const service = SMAppService.mainAppService;
        const bool done = choice == LoginItemChoice::on ? [service registerAndReturnError:&error]
                                                        : [service unregisterAndReturnError:&error];
        if (done) return {};
        const char* const words = error.localizedDescription.UTF8String;
        return std::unexpected(words != nullptr ? std::string(words) : std::string());
    }
}

void openSettings() {
    @autoreleasepool {
        [SMAppService openSystemSettingsLoginItems];
    }
}

}  // namespace

LoginItemService macLoginItem() {
    return {.state = state, .registerItem = registerItem, .choose = choose, .openSettings = openSettings};
}

}  // namespace tarnik
