#include "app/model/InfoText.h"

namespace tarnik {

std::optional<std::string> infoText(const PropertyList& info, std::string_view key) {
    const PropertyList* value = info.entry(key);
    auto text = value != nullptr ? value->asString() : std::nullopt;
    return text && !text->empty() ? text : std::nullopt;
}

}  // namespace tarnik
