// Holds a session's text that arrives in chunks against the rule for the whole, and what the faces make of
// its snapshots against their bounds.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "app/console/PairingTranscript.h"
#include "app/model/TerminalTail.h"
#include "core/pairing/TerminalBuffer.h"

namespace {

using namespace tarnik;

void require(bool holds) {
    if (!holds) std::abort();
}

void keepEnd(std::string& raw) {
    if (raw.size() <= TerminalBuffer::maxTextBytes) return;
    LastCharacters last(TerminalBuffer::keptCharacters);
    last.append(raw);
    raw.erase(0, last.start());
}

}  // namespace

// The first byte says how often the rest is printed, the second how long the chunks are; every eighth
// snapshot is shown. Few inputs are printed until the text is cut, and in few chunks, since the rule for the
// whole is slow.
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
    }
    require(buffer.text() == TerminalText::clean(raw));
    return 0;
}
