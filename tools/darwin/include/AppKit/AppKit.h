#pragma once
#pragma clang system_header

// Includes GNUstep's AppKit and declares the parts of Apple's that it lacks.

#include_next <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

@interface NSApplication (Fence)
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activate __attribute__((availability(macos, introduced = 14)));
@end

@interface NSView (Fence)
- (void)setAccessibilityLabel:(NSString*)label;
@end
