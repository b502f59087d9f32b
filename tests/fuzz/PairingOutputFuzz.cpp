// Compares a session's text that arrives in chunks with the rule for the whole text, and checks the limits of
// the displayed snapshots.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "app/console/PairingTranscript.h"
#include "app/model/TerminalTail.h"
#include "core/pairing/TerminalBuffer.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

void keepEnd(std::string& raw) {
    if (raw.size() <= TerminalBuffer::maxTextBytes) return;
    LastCharacters last(TerminalBuffer::keptCharacters);
    last.append(raw);
    raw.erase(0, last.start());
}

}  // namespace

// The first byte is the number of repetitions of the rest, the second the length of the chunks. Every eighth
// snapshot is displayed. Few inputs get long enough to be cut, and then in few chunks, because the rule for
// the whole text is slow.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const std::string_view once(reinterpret_cast<const char*>(data) + 2, size - 2);
    std::string printed;
    const unsigned times = data[0] < 240 ? 1 : data[0];
    for (unsigned i = 0; i < times && printed.size() < 20'000; ++i) printed += once;
    const std::size_t chunkBytes = 1 + data[1] / 4U + printed.size() / 32;

    TerminalBuffer buffer;
    PairingTranscript transcript;
    std::string raw;
    for (std::size_t at = 0, chunk = 0; at < printed.size(); at += chunkBytes, ++chunk) {
        const auto bytes = std::string_view(printed).substr(at, chunkBytes);
        const std::uint64_t end = buffer.textStart() + buffer.text().size();
        const std::size_t unchanged = buffer.append(bytes);
        raw += decodeLossy(bytes);
        keepEnd(raw);
        require(unchanged <= buffer.text().size());
        require(buffer.textStart() + buffer.text().size() >= end);
        if (chunk % 8 != 0) continue;
        require(buffer.text() == TerminalText::clean(raw));
        const auto news = transcript.update(
            {.sessionID = "", .phase = {}, .text = buffer.text(), .textStart = buffer.textStart()});
        require(news.lines.size() <= PairingTranscript::maxLines + 3);
        for (const auto& line : news.lines) require(line.size() <= 4 * PairingTranscript::longestLine);
        require(terminalTail(buffer.text()).size() <= maxTerminalTailBytes);
        require(buffer.displayText().size() <= TerminalDisplay::maxTextBytes);
        require(isUtf8(buffer.displayText()) && !buffer.displayText().contains('\r'));
    }
    require(buffer.text() == TerminalText::clean(raw));
    return 0;
}
