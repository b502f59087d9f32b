#include "app/console/PairingTranscript.h"

#include <algorithm>
#include <utility>

#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr const char* leftOut = "\u2026";

// Returns the longest suffix of `text` with at most `count` line feeds.
std::string_view newestLines(std::string_view text, std::size_t count) {
    std::size_t at = text.size();
    for (std::size_t lines = 0; at > 0; --at) {
        if (text[at - 1] == '\n' && ++lines > count) break;
    }
    return text.substr(at);
}

}  // namespace

PairingTranscript::News PairingTranscript::update(const PairingSession::Snapshot& snapshot) {
    News news;
    const std::string_view all = snapshot.text;
    const std::uint64_t end = snapshot.textStart + all.size();
    const std::string_view fresh = all.substr(all.size() - std::min<std::uint64_t>(all.size(), end - seen_));
    const std::string_view shown = newestLines(fresh, maxLines);
    if (end - seen_ > shown.size()) {
        finishLine(news.lines);
        news.lines.emplace_back(leftOut);
    }
    seen_ = end;
    add(shown, news.lines);
    if (phase_ != snapshot.phase) {
        phase_ = news.phase = snapshot.phase;
        finishLine(news.lines);
    }
    return news;
}

void PairingTranscript::add(std::string_view text, std::vector<std::string>& lines) {
    constexpr std::size_t maxPendingBytes = 4 * longestLine + 4;  // one code point more than the longest line
    while (!text.empty()) {
        const std::size_t lineEnd = std::min(text.find('\n'), text.size());
        pending_ +=
            text.substr(0, std::min(lineEnd, maxPendingBytes - std::min(pending_.size(), maxPendingBytes)));
        if (lineEnd == text.size()) return;
        finishLine(lines);
        text.remove_prefix(lineEnd + 1);
    }
}

void PairingTranscript::finishLine(std::vector<std::string>& lines) {
    const auto plain = sanitizedLine(std::exchange(pending_, {}), longestLine);
    if (!plain.empty()) lines.push_back(plain);
}

}  // namespace tarnik
