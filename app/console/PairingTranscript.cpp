#include "app/console/PairingTranscript.h"

#include <algorithm>
#include <utility>

#include "core/foundation/OneLine.h"

namespace tarnik {
namespace {

// Long enough to be found again in a text that has lost its beginning, and nowhere else.
constexpr std::size_t overlapBytes = 200;

void addLine(std::vector<std::string>& lines, std::string_view line) {
    constexpr std::size_t longestLine = 2000;
    const auto plain = oneLine(line, longestLine);
    if (!plain.empty()) lines.push_back(plain);
}

}  // namespace

PairingTranscript::News PairingTranscript::update(const PairingSession::Snapshot& snapshot) {
    News news;
    pending_ += fresh(snapshot.text);
    seen_ = snapshot.text;
    std::size_t start = 0;
    for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n', start)) {
        addLine(news.lines, std::string_view(pending_).substr(start, end - start));
        start = end + 1;
    }
    pending_.erase(0, start);
    if (phase_ != snapshot.phase) {
        phase_ = news.phase = snapshot.phase;
        addLine(news.lines, std::exchange(pending_, {}));
    }
    return news;
}

// A text that grew starts with the last one; one that was cut holds the last one's end somewhere.
std::string_view PairingTranscript::fresh(const std::string& text) const {
    const std::string_view all = text;
    if (all.starts_with(seen_)) return all.substr(seen_.size());
    const auto overlap = std::string_view(seen_).substr(seen_.size() - std::min(seen_.size(), overlapBytes));
    const auto found = all.rfind(overlap);
    return found == std::string_view::npos ? all : all.substr(found + overlap.size());
}

}  // namespace tarnik
