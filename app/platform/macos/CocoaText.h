#pragma once

#include <string>
#include <string_view>

#import <Foundation/Foundation.h>

// Converts texts to and from Cocoa. For Objective-C++ only.
namespace tarnik {

// Returns an empty string if the text isn't UTF-8.
inline NSString* cocoaText(std::string_view text) {
    NSString* made = [[NSString alloc] initWithBytes:text.data()
                                              length:text.size()
                                            encoding:NSUTF8StringEncoding];
    return made ? made : @"";
}

// Returns an empty string for nil.
inline std::string plainText(NSString* text) {
    const char* bytes = text.UTF8String;
    return bytes ? bytes : "";
}

}  // namespace tarnik
