#pragma once
#pragma clang system_header

// Includes GNUstep's AppKit and declares the parts of Apple's that it lacks.

#include_next <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

@interface NSApplication (Fence)
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activateIgnoringOtherApps:(BOOL)flag;
- (void)yieldActivationToApplication:(NSRunningApplication*)application
    __attribute__((availability(macos, introduced = 14)));
@end

@interface NSRunningApplication (Fence)
- (BOOL)activateFromApplication:(NSRunningApplication*)application
                        options:(NSApplicationActivationOptions)options
    __attribute__((availability(macos, introduced = 14)));
@end

@interface NSImage (Fence)
- (void)setTemplate:(BOOL)isTemplate;
@end

@interface NSStatusItem (Fence)
@property(readonly) NSButton* button;
@end

@interface NSWindow (Fence)
- (void)setPreventsApplicationTerminationWhenModal:(BOOL)prevents;
@end

extern NSNotificationName const NSWindowDidChangeOcclusionStateNotification;

@interface NSView (Fence)
- (void)setAccessibilityLabel:(NSString*)label;
@end
