#include "core/foundation/Placeholders.h"

#include <algorithm>

namespace tarnik {
namespace {

// A text up to its first placeholder, and what follows that placeholder.
struct Split {
    std::string_view before;
    std::string_view name;  // empty if the text has no placeholder
    std::string_view after;
};

Split splitAtPlaceholder(std::string_view text) {
    const auto open = text.find('{');
    const auto close = text.find('}', std::min(open, text.size()));
    if (close == std::string_view::npos) return {.before = text, .name = {}, .after = {}};
    return {.before = text.substr(0, open),
            .name = text.substr(open + 1, close - open - 1),
            .after = text.substr(close + 1)};
}

}  // namespace

std::string filled(std::string_view text, const Placeholders& values) {
    std::string result;
    auto rest = splitAtPlaceholder(text);
    for (; !rest.name.empty(); rest = splitAtPlaceholder(rest.after)) {
        result += rest.before;
        const auto found = std::ranges::find(values, rest.name, &Placeholder::name);
        if (found == values.end()) {
            result.append("{").append(rest.name).append("}");
        } else {
            result += found->value;
        }
    }
    return result.append(rest.before);
}

std::optional<Placeholders> valuesOf(std::string_view pattern, std::string_view text) {
    Placeholders values;
    auto rest = splitAtPlaceholder(pattern);
    if (!text.starts_with(rest.before)) return std::nullopt;
    text.remove_prefix(rest.before.size());
    while (!rest.name.empty()) {
        const auto name = rest.name;
        rest = splitAtPlaceholder(rest.after);
        const bool isLast = rest.name.empty();
        const auto end = isLast ? text.rfind(rest.before) : text.find(rest.before);
        if (end == std::string_view::npos) return std::nullopt;
        values.push_back({.name = name, .value = std::string(text.substr(0, end))});
        text.remove_prefix(end + rest.before.size());
    }
    if (!text.empty()) return std::nullopt;
    return values;
}

}  // namespace tarnik
