// Compares TerminalText::clean with a direct implementation of its rule, and checks decodeLossy and
// LastCharacters.

#include <cstdint>
#include <string>

#include "core/foundation/Utf8.h"
#include "core/pairing/TerminalText.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

// Works on bytes: except for the character behind an escape, the rule names ASCII characters only.
std::string cleanedByRule(std::string_view text) {
    std::string kept;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte != 27) {
            if (byte == 9 || byte == 10 || byte >= 32) kept += text[i];
            continue;
        }
        if (++i == text.size()) break;
        if (text[i] == ']') {
            for (++i; i < text.size() && text[i] != 7 && text.substr(i - 1, 2) != "\x1B\\";) ++i;
        } else if (text[i] == '[') {
            for (++i; i < text.size() && (text[i] < 64 || text[i] > 126);) ++i;
        } else {
            while (i + 1 < text.size() && (text[i + 1] & 0xC0) == 0x80) ++i;
        }
    }
    return kept;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = decodeLossy(fuzz::textOf(data, size));
    require(isUtf8(text) && decodeLossy(text) == text);
    require(TerminalText::clean(text) == cleanedByRule(text));

    LastCharacters last(1 + size / 2);
    last.append(text);
    require(last.start() <= text.size() && isUtf8(text.substr(last.start())));
    return 0;
}
