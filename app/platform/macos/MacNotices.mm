#include <map>
#include <memory>
#include <utility>

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

#include "app/platform/macos/CocoaText.h"
#include "app/platform/macos/MacOperations.h"

// Receives the clicks on our notices. The system calls it on any thread.
@interface TarnikNoticeReceiver : NSObject <UNUserNotificationCenterDelegate>
- (instancetype)initWithHandler:(std::function<void()>)handler;
@end

@implementation TarnikNoticeReceiver {
    std::function<void()> _handler;
}

- (instancetype)initWithHandler:(std::function<void()>)handler {
    self = [super init];
    if (self) _handler = std::move(handler);
    return self;
}

// Shows a notice even while this program is the active one. The system would hide it otherwise.
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler {
    (void)center;
    (void)notification;
    completionHandler(UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionList);
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler {
    (void)center;
    if ([response.actionIdentifier isEqualToString:UNNotificationDefaultActionIdentifier]) _handler();
    completionHandler();
}

@end

namespace tarnik {

namespace {

UNUserNotificationCenter* centre() {
    return [UNUserNotificationCenter currentNotificationCenter];
}

// Shows the notices that are wanted when the user has answered the system's question. Main thread only,
// except for the completion handlers.
class MacNotices : public std::enable_shared_from_this<MacNotices> {
public:
    explicit MacNotices(MainThread mainThread) : mainThread_(std::move(mainThread)) {}

    // The system asks the user once, and answers later requests from memory.
    void show(const std::string& id, const UserNotice& notice) {
        wanted_[id] = notice;
        const auto post = mainThread_.post;
        const std::weak_ptr<MacNotices> weak = weak_from_this();
        [centre() requestAuthorizationWithOptions:UNAuthorizationOptionAlert
                                completionHandler:^(BOOL granted, NSError*) {
                                  post([weak, id, granted] {
                                      if (const auto self = weak.lock()) self->answered(id, granted);
                                  });
                                }];
    }

    void withdraw(const std::string& id) {
        wanted_.erase(id);
        NSArray<NSString*>* identifiers = @[ cocoaText(id) ];
        [centre() removePendingNotificationRequestsWithIdentifiers:identifiers];
        [centre() removeDeliveredNotificationsWithIdentifiers:identifiers];
    }

    void onClick(std::function<void()> handler) {
        const auto post = mainThread_.post;
        receiver_ = [[TarnikNoticeReceiver alloc]
            initWithHandler:[post, handler = std::move(handler)] { post(handler); }];
        centre().delegate = receiver_;
    }

    // After a refusal, a change in the system's settings has an effect in the next run.
    bool canShow() const { return !isDenied_; }

private:
    // A request with the identifier of an earlier one replaces it.
    void answered(const std::string& id, bool granted) {
        isDenied_ = !granted;
        const auto found = wanted_.find(id);
        if (found == wanted_.end() || isDenied_) return;
        UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
        content.title = cocoaText(found->second.title);
        content.body = cocoaText(found->second.body);
        [centre() addNotificationRequest:[UNNotificationRequest requestWithIdentifier:cocoaText(id)
                                                                              content:content
                                                                              trigger:nil]
                   withCompletionHandler:^(NSError*){}];
        wanted_.erase(found);
    }

    const MainThread mainThread_;
    std::map<std::string, UserNotice> wanted_;  // not added yet
    bool isDenied_ = false;
    TarnikNoticeReceiver* receiver_ = nil;  // owned here, because the centre doesn't retain it
};

}  // namespace

// The notification centre raises an exception in a program without a bundle identifier.
UserNotices macNotices(const MainThread& mainThread, const std::optional<std::string>& ownBundle) {
    if (!ownBundle || !NSBundle.mainBundle.bundleIdentifier) return {};
    const auto notices = std::make_shared<MacNotices>(mainThread);
    return {.canShow = [notices] { return notices->canShow(); },
            .show = [notices](const std::string& id, const UserNotice& notice) { notices->show(id, notice); },
            .withdraw = [notices](const std::string& id) { notices->withdraw(id); },
            .onClick = [notices](auto handler) { notices->onClick(std::move(handler)); }};
}

}  // namespace tarnik
