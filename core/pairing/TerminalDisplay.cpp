#include "core/pairing/TerminalDisplay.h"

#include <algorithm>

namespace tarnik {

// A carriage return inside an escape sequence is a part of the sequence.
void TerminalDisplay::append(std::string_view decoded) {
    while (!decoded.empty()) {
        const auto end = std::min(decoded.find('\r'), decoded.size());
        appendPiece(decoded.substr(0, end));
        if (end == decoded.size()) break;
        if (cleaner_.isInSequence()) {
            appendPiece("\r");
        } else {
            startsLineAnew_ = true;
        }
        decoded.remove_prefix(end + 1);
    }
    if (text_.size() > maxTextBytes) shorten();
}

void TerminalDisplay::appendPiece(std::string_view piece) {
    std::size_t before = text_.size();
    cleaner_.append(piece, text_);
    if (text_.size() == before) return;
    if (startsLineAnew_ && text_[before] != '\n') {
        text_.erase(lineStart_, before - lineStart_);
        before = lineStart_;
    }
    startsLineAnew_ = false;
    const auto lineEnd = std::string_view(text_).substr(before).rfind('\n');
    if (lineEnd != std::string_view::npos) lineStart_ = before + lineEnd + 1;
}

void TerminalDisplay::shorten() {
    std::size_t from = text_.size() - maxTextBytes / 2;
    while (from < text_.size() && (static_cast<unsigned char>(text_[from]) & 0xC0U) == 0x80) ++from;
    text_.erase(0, from);
    lineStart_ -= std::min(lineStart_, from);
}

}  // namespace tarnik
