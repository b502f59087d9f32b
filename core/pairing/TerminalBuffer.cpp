#include "core/pairing/TerminalBuffer.h"

#include <algorithm>

namespace tarnik {

std::size_t TerminalBuffer::append(std::string_view bytes) {
    const std::string decoded = decodeLossy(bytes);
    const std::size_t before = text_.size();
    kept_ += decoded;
    characters_.append(decoded);
    cleaner_.append(decoded, text_);
    // The test is in bytes and the cut in characters, so that a screenful to read is always kept.
    if (kept_.size() <= maxTextBytes) return before;
    const std::size_t dropped = cut(characters_.start() - keptStart_);
    if (kept_.size() <= maxKeptBytes) return before - std::min(before, dropped);
    shorten();
    return 0;
}

// Drops the first `bytes` of what is kept. Returns how much of the text before the cut went with it.
std::size_t TerminalBuffer::cut(std::size_t bytes) {
    TerminalText::Cleaner cleaner;
    std::string dropped;
    cleaner.append(std::string_view(kept_).substr(0, bytes), dropped);
    kept_.erase(0, bytes);
    keptStart_ += bytes;
    if (cleaner.isInSequence()) {  // the rest of that sequence is text now
        const std::size_t all = text_.size();
        cleanAgain();
        return all;
    }
    text_.erase(0, dropped.size());
    textStart_ += dropped.size();
    return dropped.size();
}

// A character may have any number of marks, so a number of characters is no bound. Half is kept, so that the
// work of starting over is paid by as many bytes.
void TerminalBuffer::shorten() {
    std::size_t from = kept_.size() - maxKeptBytes / 2;
    while (from < kept_.size() && (static_cast<unsigned char>(kept_[from]) & 0xC0U) == 0x80) ++from;
    kept_.erase(0, from);
    characters_ = LastCharacters(keptCharacters);
    characters_.append(kept_);
    keptStart_ = 0;
    cleanAgain();
}

// The end of the text keeps its place in all that was printed.
void TerminalBuffer::cleanAgain() {
    const std::uint64_t end = textStart_ + text_.size();
    text_.clear();
    cleaner_ = {};
    cleaner_.append(kept_, text_);
    textStart_ = std::max<std::uint64_t>(end, text_.size()) - text_.size();
}

}  // namespace tarnik
