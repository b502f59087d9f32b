#import <AppKit/AppKit.h>

#include "app/platform/macos/CocoaText.h"
#include "app/platform/macos/MacOperations.h"

namespace tarnik {

void openInWorkspace(std::string_view url) {
    NSURL* address = [NSURL URLWithString:cocoaText(url)];
    if (address) [[NSWorkspace sharedWorkspace] openURL:address];
}

}  // namespace tarnik
