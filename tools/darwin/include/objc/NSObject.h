#pragma once
#pragma clang system_header

// GNUstep declares NSObject in a header of its own; both would be too many.
#import <Foundation/NSObject.h>
