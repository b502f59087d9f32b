#include <memory>

#import <AppKit/AppKit.h>

#include "app/platform/macos/CocoaText.h"
#include "app/platform/macos/MacOperations.h"

// Owns the status item, and is the target of its menu's entries.
@interface TarnikStatusItem : NSObject
- (instancetype)initWithContent:(const tarnik::NativeStatusItem::Content&)content;
- (void)setPicture:(const tarnik::NativeStatusItem::Picture&)picture;
- (void)perform:(NSMenuItem*)entry;
@end

@implementation TarnikStatusItem {
    NSStatusItem* _item;
    tarnik::NativeStatusItem::Content _content;
}

- (instancetype)initWithContent:(const tarnik::NativeStatusItem::Content&)content {
    self = [super init];
    if (!self) return nil;
    _content = content;
    _item = [[NSStatusBar systemStatusBar] statusItemWithLength:NSVariableStatusItemLength];
    _item.menu = [self makeMenu];
    NSString* name = tarnik::cocoaText(content.name);
    [_item.button setToolTip:name];
    [_item.button setAccessibilityLabel:name];
    [_item.button setTitle:tarnik::cocoaText(content.title)];
    return self;
}

- (void)dealloc {
    [[NSStatusBar systemStatusBar] removeStatusItem:_item];
}

// The tag of an entry is its index in the content.
- (NSMenu*)makeMenu {
    NSMenu* menu = [[NSMenu alloc] initWithTitle:@""];
    NSInteger tag = 0;
    for (const auto& each : _content.menu) {
        if (each.title.empty()) {
            [menu addItem:[NSMenuItem separatorItem]];
        } else {
            NSMenuItem* entry = [[NSMenuItem alloc] initWithTitle:tarnik::cocoaText(each.title)
                                                           action:@selector(perform:)
                                                    keyEquivalent:tarnik::cocoaText(each.key)];
            entry.target = self;
            entry.tag = tag;
            [menu addItem:entry];
        }
        ++tag;
    }
    return menu;
}

- (void)perform:(NSMenuItem*)entry {
    _content.menu.at(static_cast<std::size_t>(entry.tag)).perform();
}

// The system chooses the representation for the screen, and the colour of a template image.
- (void)setPicture:(const tarnik::NativeStatusItem::Picture&)picture {
    const NSSize size =
        NSMakeSize(tarnik::NativeStatusItem::pictureSide, tarnik::NativeStatusItem::pictureSide);
    NSImage* image = [[NSImage alloc] initWithSize:size];
    for (const auto& file : picture) {
        NSBitmapImageRep* drawn = [[NSBitmapImageRep alloc] initWithData:[NSData dataWithBytes:file.data()
                                                                                        length:file.size()]];
        if (!drawn) continue;
        [drawn setSize:size];
        [image addRepresentation:drawn];
    }
    const bool isEmpty = image.representations.count == 0;
    [image setTemplate:YES];
    [_item.button setImage:isEmpty ? nil : image];
    [_item.button setImagePosition:isEmpty ? NSNoImage : NSImageOnly];
    [_item.button setTitle:isEmpty ? tarnik::cocoaText(_content.title) : @""];
}

@end

namespace tarnik {

// Qt's status item reads the click count of whatever event is current when its menu opens. Recent systems end
// the program for that.
NativeStatusItem makeMacStatusItem(const NativeStatusItem::Content& content) {
    TarnikStatusItem* item = [[TarnikStatusItem alloc] initWithContent:content];
    return {.setPicture = [item](const NativeStatusItem::Picture& picture) { [item setPicture:picture]; }};
}

}  // namespace tarnik
