#pragma once

#include <QKeySequence>

#include "app/model/MenuContent.h"
#include "app/views/QtText.h"

namespace tarnik {

// The key that the menu shows beside the entry; empty if it has none. Qt reads "Ctrl" as Command on macOS.
inline QKeySequence menuKey(const MenuContent::Entry& entry) {
    return entry.key.empty() ? QKeySequence() : QKeySequence("Ctrl+" + qtText(entry.key).toUpper());
}

}  // namespace tarnik
