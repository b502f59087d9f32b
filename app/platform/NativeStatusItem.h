#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarnik {

// A status item that the system shows without the toolkit. A copy shares the item. The last copy removes it.
// Main thread only.
struct NativeStatusItem {
    struct Entry {
        std::string title = {};  // empty for a separator
        std::string key = {};    // pressed with the system's modifier; empty if no key is assigned
        std::function<void()> perform = {};  // called on the main thread
    };

    struct Content {
        std::string name;   // for screen readers, and shown when the pointer rests on the item
        std::string title;  // shown while the item has no picture
        std::vector<Entry> menu;
    };

    // A picture of 18 points as PNG files, one for each number of pixels per point. Its opaque parts get the
    // colour of the menu bar. An empty picture shows the title.
    using Picture = std::vector<std::string>;
    static constexpr int pictureSide = 18;

    std::function<void(const Picture& picture)> setPicture;
};

// Shows a status item.
using MakeNativeStatusItem = std::function<NativeStatusItem(const NativeStatusItem::Content& content)>;

}  // namespace tarnik
