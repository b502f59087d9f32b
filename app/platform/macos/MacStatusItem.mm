#include "app/platform/macos/MacStatusItem.h"

#import <AppKit/AppKit.h>

#include "app/platform/macos/CocoaText.h"

namespace tarnik {

namespace {

void nameButtons(NSView* view, NSString* name) {
    if ([view isKindOfClass:[NSStatusBarButton class]]) [view setAccessibilityLabel:name];
    for (NSView* each in view.subviews) nameButtons(each, name);
}

}  // namespace

// The item is Qt's own; its button stands in a window of this application, as all of them do.
void nameMacStatusItem(std::string_view name) {
    for (NSWindow* window in NSApp.windows) nameButtons(window.contentView, cocoaText(name));
}

}  // namespace tarnik
