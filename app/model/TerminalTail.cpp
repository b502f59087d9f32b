#include "app/model/TerminalTail.h"

#include <algorithm>

#include "core/foundation/TextCleanup.h"
#include "core/foundation/Utf8.h"

namespace tarnik {
namespace {

// Returns the longest suffix of UTF-8 text that has at most maxTerminalTailBytes and starts at a code point.
std::string_view fittingEnd(std::string_view text) {
    if (text.size() <= maxTerminalTailBytes) return text;
    text.remove_prefix(text.size() - maxTerminalTailBytes);
    const auto first = std::ranges::find_if(
        text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; });
    text.remove_prefix(static_cast<std::size_t>(first - text.begin()));
    return text;
}

}  // namespace

std::string terminalTail(std::string_view printed) {
    const std::string text = decodeLossy(fittingEnd(printed));
    std::string plain;
    for (std::string_view rest = fittingEnd(text); !rest.empty();) {
        const auto lineEnd = std::min(rest.find('\n'), rest.size());
        plain += sanitizedLine(rest.substr(0, lineEnd), maxTerminalTailBytes);
        plain += '\n';
        rest.remove_prefix(std::min(lineEnd + 1, rest.size()));
    }
    plain.erase(plain.find_last_not_of(" \n") + 1);
    return plain;
}

}  // namespace tarnik
