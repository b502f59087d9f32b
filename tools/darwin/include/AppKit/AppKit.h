#pragma once
#pragma clang system_header

// AppKit is GNUstep's; what that lacks of Apple's is added.

#include_next <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

@interface NSApplication (Fence)
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activate __attribute__((availability(macos, introduced = 14)));
@end

@interface NSView (Fence)
- (void)setAccessibilityLabel:(NSString*)label;
@end
