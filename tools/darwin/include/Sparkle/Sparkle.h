#pragma once
#pragma clang system_header

// The declarations of the update framework that this project uses.

#import <Foundation/Foundation.h>

@class SPUUpdater;

@interface SUAppcastItem : NSObject
@property(nonatomic, copy, readonly) NSString* displayVersionString;
@end

@protocol SPUUpdaterDelegate <NSObject>
@optional
- (BOOL)updater:(SPUUpdater*)updater
       willInstallUpdateOnQuit:(SUAppcastItem*)item
    immediateInstallationBlock:(void (^)(void))immediateInstallHandler;
@end

@protocol SPUStandardUserDriverDelegate <NSObject>
@end

@interface SPUUpdater : NSObject
- (BOOL)startUpdater:(NSError* __autoreleasing*)error;
@property(nonatomic) BOOL automaticallyChecksForUpdates;
@property(nonatomic) BOOL automaticallyDownloadsUpdates;
@end

@interface SPUStandardUpdaterController : NSObject
@property(nonatomic, readonly) SPUUpdater* updater;
- (instancetype)init NS_UNAVAILABLE;
- (instancetype)initWithStartingUpdater:(BOOL)startUpdater
                        updaterDelegate:(id<SPUUpdaterDelegate>)updaterDelegate
                     userDriverDelegate:(id<SPUStandardUserDriverDelegate>)userDriverDelegate;
- (void)startUpdater;
- (void)checkForUpdates:(id)sender;
@end
