#pragma once

#include <QKeySequence>

#include "app/model/MenuContent.h"
#include "app/views/QtText.h"

namespace tarnik {

// Returns the shortcut of a menu entry, or an empty sequence if the entry has no key. Qt maps "Ctrl" to
// Command on macOS.
inline QKeySequence menuKey(const MenuContent::Entry& entry) {
    return entry.key.empty() ? QKeySequence() : QKeySequence("Ctrl+" + qtText(entry.key).toUpper());
}

}  // namespace tarnik
