#pragma once
#pragma clang system_header

// Includes GNUstep's Foundation and declares the parts of Apple's that it lacks.

#include <CoreFoundation/CoreFoundation.h>
#include_next <Foundation/Foundation.h>
#import <Foundation/NSAppleEventDescriptor.h>
#import <Foundation/NSAppleEventManager.h>

typedef UInt32 AEEventClass;
typedef UInt32 AEEventID;
enum : AEEventClass { kCoreEventClass = 0x61657674 /* aevt */ };
typedef UInt32 AEKeyword;
enum : AEEventID { kAEReopenApplication = 0x72617070 /* rapp */ };
enum : AEEventClass { kInternetEventClass = 0x4755524c /* GURL */ };
enum : AEEventID { kAEGetURL = 0x4755524c /* GURL */ };
enum : AEKeyword { keyDirectObject = 0x2d2d2d2d /* ---- */ };

@interface NSAppleEventDescriptor (Fence)
- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword;
- (NSString*)stringValue;
@end

@interface NSAppleEventManager (Fence)
+ (NSAppleEventManager*)sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

@interface NSFileManager (Fence)
- (BOOL)trashItemAtURL:(NSURL*)url resultingItemURL:(NSURL**)resultingURL error:(NSError**)error;
@end
