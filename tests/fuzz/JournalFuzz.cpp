// For any bytes: an accepted line of the journal is printed and parsed to the same event, the explanation of
// any such events is found, and no pairing code survives the removal of secrets.

#include <string>

#include "app/journal/Explanation.h"
#include "app/journal/SecretFilter.h"
#include "core/foundation/Utf8.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text = fuzz::textOf(data, size);
    const std::string code = "Xq7ZkPw3RtYv9LmN2sBd4_";
    const auto middle = text.size() / 2;
    const std::string before(text.substr(0, middle));
    const std::string withCode = before + " " + code + " " + std::string(text.substr(middle));
    require(!withoutSecrets(withCode).contains(code));

    std::vector<JournalEvent> events;
    while (!text.empty()) {
        const auto line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const auto event = JournalEvent::parse(line);
        if (!event) continue;
        if (event->json().size() <= JournalEvent::maxLineBytes)
            require(JournalEvent::parse(event->json()) == event);
        events.push_back(*event);
    }
    for (const auto& explanation : explain(events, WallTime())) require(!explanation.sentence.empty());
    return 0;
}
