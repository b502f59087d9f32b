// Compares TerminalText::clean with a direct implementation of its rule, and checks decodeLossy and
// LastCharacters.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/foundation/Utf8.h"
#include "core/pairing/TerminalText.h"
#include "tests/fuzz/Require.h"

namespace {

using tarnik::fuzz::require;

std::u32string scalars(const std::string& utf8) {
    std::u32string all;
    for (const char character : utf8) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            all += byte;
        } else if (byte >= 0xC0) {
            all += byte < 0xE0 ? byte & 0x1FU : byte < 0xF0 ? byte & 0x0FU : byte & 0x07U;
        } else {
            all.back() = (all.back() << 6U) | (byte & 0x3FU);
        }
    }
    return all;
}

std::u32string cleanedByRule(const std::u32string& text) {
    std::u32string kept;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == 27) {
            if (++i == text.size()) break;
            if (text[i] == U']') {
                char32_t previous = U' ';
                for (++i; i < text.size() && text[i] != 7 && !(text[i] == U'\\' && previous == 27); ++i)
                    previous = text[i];
            } else if (text[i] == U'[') {
                for (++i; i < text.size() && (text[i] < 64 || text[i] > 126);) ++i;
            }
        } else if (text[i] == 9 || text[i] == 10 || text[i] >= 32) {
            kept += text[i];
        }
    }
    return kept;
}

bool isScalar(char32_t number) {
    return number < 0xD800 || (number > 0xDFFF && number <= 0x10FFFF);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes(size, '\0');
    if (size != 0) std::memcpy(bytes.data(), data, size);

    const std::string text = tarnik::decodeLossy(bytes);
    require(tarnik::decodeLossy(text) == text);
    for (const char32_t scalar : scalars(text)) require(isScalar(scalar));

    require(scalars(tarnik::TerminalText::clean(text)) == cleanedByRule(scalars(text)));

    tarnik::LastCharacters last(1 + size / 2);
    last.append(text);
    require(last.start() <= text.size() &&
            tarnik::decodeLossy(text.substr(last.start())).size() == text.size() - last.start());
    return 0;
}
