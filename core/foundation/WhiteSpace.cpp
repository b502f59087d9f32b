#include "core/foundation/WhiteSpace.h"

#include <algorithm>
#include <iterator>

namespace tarnik {

namespace {

// The tab, the line breaks and the space separators of Unicode, as UTF-8.
// clang-format off
constexpr std::string_view blanks[] = {
    "\t", "\n", "\v", "\f", "\r", " ", "\xC2\x85", "\xC2\xA0", "\xE1\x9A\x80",
    "\xE2\x80\x80", "\xE2\x80\x81", "\xE2\x80\x82", "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85",
    "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88", "\xE2\x80\x89", "\xE2\x80\x8A",
    "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"};
// clang-format on

bool removeFirst(std::string_view& text) {
    const auto* at = std::ranges::find_if(blanks, [text](auto blank) { return text.starts_with(blank); });
    if (at == std::end(blanks)) return false;
    text.remove_prefix(at->size());
    return true;
}

bool removeLast(std::string_view& text) {
    const auto* at = std::ranges::find_if(blanks, [text](auto blank) { return text.ends_with(blank); });
    if (at == std::end(blanks)) return false;
    text.remove_suffix(at->size());
    return true;
}

}  // namespace

std::string_view trimmingWhiteSpace(std::string_view text) {
    while (removeFirst(text)) continue;
    while (removeLast(text)) continue;
    return text;
}

}  // namespace tarnik
