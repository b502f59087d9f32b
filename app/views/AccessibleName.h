#pragma once

#include <QWidget>
#include <string_view>

#include "app/views/QtText.h"

namespace tarnik {

// Names a widget for screen readers, which are told only of another name than before.
inline void updateAccessibleName(QWidget& widget, std::string_view name) {
    if (const auto text = qtText(name); text != widget.accessibleName()) widget.setAccessibleName(text);
}

}  // namespace tarnik
