#pragma once

#include <string>
#include <string_view>

#import <Foundation/Foundation.h>

// Texts on their way to Cocoa and back; for Objective-C++ only.
namespace tarnik {

// Empty for what isn't UTF-8.
inline NSString* cocoaText(std::string_view text) {
    NSString* made = [[NSString alloc] initWithBytes:text.data()
                                              length:text.size()
                                            encoding:NSUTF8StringEncoding];
    return made ? made : @"";
}

// Empty for nil.
inline std::string plainText(NSString* text) {
    const char* bytes = text.UTF8String;
    return bytes ? bytes : "";
}

}  // namespace tarnik
