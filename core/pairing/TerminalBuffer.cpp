#include "core/pairing/TerminalBuffer.h"

#include <algorithm>

namespace tarnik {

std::size_t TerminalBuffer::append(std::string_view bytes) {
    const std::string decoded = decodeLossy(bytes);
    const std::size_t before = text_.size();
    kept_ += decoded;
    characters_.append(decoded);
    cleaner_.append(decoded, text_);
    display_.append(decoded);
    // maxTextBytes counts bytes, but a cut keeps keptCharacters, so enough text always remains.
    if (kept_.size() <= maxTextBytes) return before;
    const std::size_t dropped = cut(characters_.start() - keptStart_);
    if (kept_.size() <= maxKeptBytes) return before - std::min(before, dropped);
    shorten();
    return 0;
}

// Drops the first `bytes` of the kept output. Returns how many bytes of text_ were removed or may have
// changed.
std::size_t TerminalBuffer::cut(std::size_t bytes) {
    TerminalText::Cleaner cleaner;
    std::string dropped;
    cleaner.append(std::string_view(kept_).substr(0, bytes), dropped);
    kept_.erase(0, bytes);
    keptStart_ += bytes;
    if (cleaner.isInSequence()) {  // the cut splits a sequence; the rest of the sequence is text now
        const std::size_t all = text_.size();
        cleanAgain();
        return all;
    }
    text_.erase(0, dropped.size());
    textStart_ += dropped.size();
    return dropped.size();
}

// Keeps only the last maxKeptBytes / 2 bytes. keptCharacters alone doesn't bound the memory, because a
// character may have any number of combining marks. Because half is dropped, the total cost of repeated
// cleaning is linear in the input.
void TerminalBuffer::shorten() {
    std::size_t from = kept_.size() - maxKeptBytes / 2;
    while (from < kept_.size() && (static_cast<unsigned char>(kept_[from]) & 0xC0U) == 0x80) ++from;
    kept_.erase(0, from);
    characters_ = LastCharacters(keptCharacters);
    characters_.append(kept_);
    keptStart_ = 0;
    cleanAgain();
}

// Cleans the kept output again. The end of text_ keeps its offset in the whole plain text.
void TerminalBuffer::cleanAgain() {
    const std::uint64_t end = textStart_ + text_.size();
    text_.clear();
    cleaner_ = {};
    cleaner_.append(kept_, text_);
    textStart_ = std::max<std::uint64_t>(end, text_.size()) - text_.size();
}

}  // namespace tarnik
