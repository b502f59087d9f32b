// Whatever the text: a code is one, an accepted join address ends with it, and addresses keep what they were
// parsed from.

#include "core/foundation/Json.h"
#include "core/pairing/JoinLink.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnik;
    using fuzz::require;
    const std::string_view text = fuzz::textOf(data, size);
    const auto origin = Url::parse("https://tarnik.example:8");
    const std::string wanted(22, 'A');

    if (const auto code = JoinLink::code(text, *origin)) require(JoinLink::isCode(*code));
    if (const auto url = Url::parse(text)) {
        require(url->text() == text);
        const Url longer = url->appending("a/b");
        require(longer.path().ends_with("/a%2Fb"));
        if (longer.text().size() <= Url::maxBytes) require(Url::parse(longer.text()) == longer);
    }
    if (const auto url = JoinLink::joinURL(text, wanted)) {
        require(url->text().ends_with("/c/" + wanted));
        require(url->scheme() == "https" || url->host() == "localhost" || url->host() == "127.0.0.1");
    }
    if (const auto json = Json::parse(text, size)) {
        // Plain print takes the quotes off a text alone.
        const auto again = Json::parse(json->asString() ? quotedJson(json->text()) : json->text(), 8 * size);
        require(again && again->text() == json->text());
    }
    return 0;
}
