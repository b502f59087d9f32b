#pragma once
#pragma clang system_header

// Forwards to GNUstep's declaration of NSObject, so that there is only one.
#import <Foundation/NSObject.h>
