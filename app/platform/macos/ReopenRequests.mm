#include "app/platform/macos/ReopenRequests.h"

#include <utility>

#import <AppKit/AppKit.h>

@interface TarnikReopenReceiver : NSObject
- (instancetype)initWithHandler:(std::function<void()>)handler;
- (void)reopen:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply;
@end

@implementation TarnikReopenReceiver {
    std::function<void()> _handler;
}

- (instancetype)initWithHandler:(std::function<void()>)handler {
    self = [super init];
    if (self) _handler = std::move(handler);
    return self;
}

- (void)reopen:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply {
    (void)event;
    (void)reply;
    _handler();
}

@end

namespace tarnik {

struct ReopenRequests::Receiver {
    TarnikReopenReceiver* object;  // owned here, because the event manager does not retain it
};

ReopenRequests::ReopenRequests(std::function<void()> handler)
    : receiver_(new Receiver{[[TarnikReopenReceiver alloc] initWithHandler:std::move(handler)]}) {
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:receiver_->object
                                                       andSelector:@selector(reopen:reply:)
                                                     forEventClass:kCoreEventClass
                                                        andEventID:kAEReopenApplication];
}

ReopenRequests::~ReopenRequests() {
    [[NSAppleEventManager sharedAppleEventManager] removeEventHandlerForEventClass:kCoreEventClass
                                                                        andEventID:kAEReopenApplication];
}

}  // namespace tarnik
