#pragma once

#include <QString>
#include <string_view>

namespace tarnik {

// A text of ours, which is UTF-8, as the toolkit takes it.
inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace tarnik
