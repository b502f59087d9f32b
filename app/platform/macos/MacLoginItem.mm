#import <ServiceManagement/ServiceManagement.h>

#include "app/platform/macos/MacOperations.h"

namespace tarnik {

namespace {

bool isEnabled() {
    @autoreleasepool {
        return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
    }
}

bool registerItem() {
    @autoreleasepool {
        return [SMAppService.mainAppService registerAndReturnError:nil];
    }
}

}  // namespace

LoginItemService macLoginItem() {
    return {.isEnabled = isEnabled, .registerItem = registerItem};
}

}  // namespace tarnik
