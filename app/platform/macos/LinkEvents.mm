#include "app/platform/macos/LinkEvents.h"

#include <utility>

#import <AppKit/AppKit.h>

#include "app/platform/macos/CocoaText.h"

@interface TarnikLinkReceiver : NSObject
- (instancetype)initWithHandler:(std::function<void(const std::string&)>)handler;
- (void)install;
- (void)open:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply;
@end

@implementation TarnikLinkReceiver {
    std::function<void(const std::string&)> _handler;
}

- (instancetype)initWithHandler:(std::function<void(const std::string&)>)handler {
    self = [super init];
    if (self) _handler = std::move(handler);
    return self;
}

- (void)install {
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:self
                                                       andSelector:@selector(open:reply:)
                                                     forEventClass:kInternetEventClass
                                                        andEventID:kAEGetURL];
}

// An event without a text is ignored.
- (void)open:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply {
    (void)reply;
    NSString* link = [[event paramDescriptorForKeyword:keyDirectObject] stringValue];
    if (link) _handler(tarnik::plainText(link));
}

@end

namespace tarnik {

struct LinkEvents::Receiver {
    TarnikLinkReceiver* object;  // owned here, because the event manager does not retain it
    id observer;
};

// AppKit notifies its delegate, which is Qt's object, before the observers that were added later.
LinkEvents::LinkEvents(std::function<void(const std::string& link)> handler)
    : receiver_(new Receiver{[[TarnikLinkReceiver alloc] initWithHandler:std::move(handler)], nil}) {
    TarnikLinkReceiver* const object = receiver_->object;
    receiver_->observer =
        [[NSNotificationCenter defaultCenter] addObserverForName:NSApplicationWillFinishLaunchingNotification
                                                          object:nil
                                                           queue:nil
                                                      usingBlock:^(NSNotification*) { [object install]; }];
}

LinkEvents::~LinkEvents() {
    [[NSNotificationCenter defaultCenter] removeObserver:receiver_->observer];
    [[NSAppleEventManager sharedAppleEventManager] removeEventHandlerForEventClass:kInternetEventClass
                                                                        andEventID:kAEGetURL];
}

}  // namespace tarnik
