// For any text: an accepted code is valid, a URL keeps its text, and a printed JSON value parses to itself.

#include "core/foundation/Json.h"
#include "core/pairing/JoinLink.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnik;
    using fuzz::require;
    const std::string_view text = fuzz::textOf(data, size);
    const auto origin = Url::parse("https://tarnik.example:8");

    if (const auto code = JoinLink::code(text, *origin)) require(JoinLink::isCode(code->text));
    if (const auto url = Url::parse(text)) {
        require(url->text() == text);
        const Url longer = url->appending("a/b");
        require(longer.path().ends_with("/a%2Fb"));
        if (longer.text().size() <= Url::maxBytes) require(Url::parse(longer.text()) == longer);
    }
    if (const auto json = Json::parse(text, size)) {
        // text() removes the quotes of a string only.
        const auto again = Json::parse(json->asString() ? quotedJson(json->text()) : json->text(), 8 * size);
        require(again && again->text() == json->text());
    }
    return 0;
}
