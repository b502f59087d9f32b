#include "app/platform/macos/ShowWindowNotice.h"

#include <utility>

#include <CoreFoundation/CoreFoundation.h>

namespace tarnik {

namespace {

CFStringRef name() {
    return CFSTR("com.tarnik.node.showWindow");
}

void heard(CFNotificationCenterRef, void* handler, CFNotificationName, const void*, CFDictionaryRef) {
    (*static_cast<const std::function<void()>*>(handler))();
}

}  // namespace

// Delivered at once on both ends: the system holds notifications back from an application that isn't active,
// and ours hardly ever is.
ShowWindowNotice::ShowWindowNotice(std::function<void()> handler) : handler_(std::move(handler)) {
    ::CFNotificationCenterAddObserver(::CFNotificationCenterGetDistributedCenter(), &handler_, heard, name(),
                                      nullptr, CFNotificationSuspensionBehaviorDeliverImmediately);
}

ShowWindowNotice::~ShowWindowNotice() {
    ::CFNotificationCenterRemoveObserver(::CFNotificationCenterGetDistributedCenter(), &handler_, name(),
                                         nullptr);
}

void ShowWindowNotice::post() {
    constexpr Boolean deliverImmediately = true;
    ::CFNotificationCenterPostNotification(::CFNotificationCenterGetDistributedCenter(), name(), nullptr,
                                           nullptr, deliverImmediately);
}

}  // namespace tarnik
