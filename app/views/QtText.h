#pragma once

#include <QString>
#include <QWidget>
#include <string_view>

namespace tarnik {

// Converts UTF-8 text to a QString.
inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Sets the widget's accessible name if it differs, because Qt notifies screen readers of every call.
inline void updateAccessibleName(QWidget& widget, std::string_view name) {
    if (const auto text = qtText(name); text != widget.accessibleName()) widget.setAccessibleName(text);
}

}  // namespace tarnik
