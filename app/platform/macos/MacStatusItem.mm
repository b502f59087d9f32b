#import <AppKit/AppKit.h>

#include "app/platform/macos/CocoaText.h"
#include "app/platform/macos/MacOperations.h"

namespace tarnik {

namespace {

void nameButtons(NSView* view, NSString* name) {
    if ([view isKindOfClass:[NSStatusBarButton class]]) [view setAccessibilityLabel:name];
    for (NSView* each in view.subviews) nameButtons(each, name);
}

}  // namespace

// Qt owns the status item. Its button is in one of this application's windows.
void nameMacStatusItem(std::string_view name) {
    for (NSWindow* window in NSApp.windows) nameButtons(window.contentView, cocoaText(name));
}

}  // namespace tarnik
