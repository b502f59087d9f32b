#include "app/relocation/HandedLink.h"

#include <charconv>
#include <chrono>

#include "core/foundation/PrivateFolder.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/pairing/JoinLink.h"

namespace tarnik {

namespace {

constexpr const char* fileName = "link";
constexpr std::chrono::minutes longestWait(10);
constexpr std::size_t longestTime = 32;

long long secondsOf(Relocation::RecordTime time) {
    return std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch()).count();
}

}  // namespace

HandedLink::HandedLink(const std::string& applicationSupport)
    : folder_(applicationSupport + "/" + std::string(TarnikIdentity::appName)) {}

// Writes the time in seconds, a space, and the link.
void HandedLink::put(const std::string& link, Relocation::RecordTime now) const {
    const auto folder = PrivateFolder::open(folder_);
    if (folder) folder->replace(fileName, std::to_string(secondsOf(now)) + " " + link);
}

std::optional<std::string> HandedLink::take(Relocation::RecordTime now) const {
    const auto folder = PrivateFolder::open(folder_);
    if (!folder) return std::nullopt;
    const auto text = folder->read(fileName, JoinLink::maxTextBytes + longestTime);
    folder->remove(fileName);
    if (!text) return std::nullopt;

    long long putAt = 0;
    const char* const end = text->data() + text->size();
    const auto [rest, error] = std::from_chars(text->data(), end, putAt);
    if (error != std::errc() || rest == end || *rest != ' ') return std::nullopt;
    const auto waited = secondsOf(now) - putAt;
    if (waited < 0 || waited > std::chrono::seconds(longestWait).count()) return std::nullopt;
    return std::string(rest + 1, end);
}

}  // namespace tarnik
