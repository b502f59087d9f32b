#include "app/platform/macos/ShowWindowNotice.h"

#include <utility>

#include <CoreFoundation/CoreFoundation.h>

namespace tarnik {

namespace {

CFStringRef name() {
    return CFSTR("com.tarnik.node.showWindow");
}

void received(CFNotificationCenterRef, void* handler, CFNotificationName, const void*, CFDictionaryRef) {
    (*static_cast<const std::function<void()>*>(handler))();
}

}  // namespace

// The observer and the sender request immediate delivery. The system delays other notifications to an
// inactive application, and ours is rarely active.
ShowWindowNotice::ShowWindowNotice(std::function<void()> handler) : handler_(std::move(handler)) {
    ::CFNotificationCenterAddObserver(::CFNotificationCenterGetDistributedCenter(), &handler_, received,
                                      name(), nullptr, CFNotificationSuspensionBehaviorDeliverImmediately);
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
