#include "core/foundation/Url.h"

#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/Words.h"

namespace tarnik {
namespace {

// Returns the parts of the URL in one line; "none" if it is invalid.
std::string pieces(std::string_view text) {
    const auto url = Url::parse(text);
    if (!url) return "none";
    std::string line = url->scheme() + " " + url->host().value_or("-") + " " + url->port().value_or("-") +
                       " " + std::string(url->path());
    if (url->hasUserInfo()) line += " user";
    if (url->hasQueryOrFragment()) line += " more";
    for (const auto& item : url->queryItems()) line += " " + item.name + "=" + item.value.value_or("(none)");
    return line;
}

TEST(Url, parsesTheParts) {
    const std::pair<const char*, const char*> cases[] = {
        {"HTTPS://Example.COM:0443/C/%63%2Fx//", "https example.com 0443 /C/%63%2Fx//"},
        {"tarnik://connect?a=1&code=x+y%2B%2525&b&c=#f",
         "tarnik connect -  more a=1 code=x+y+%25 b=(none) c="},
        {"http://[::1]:65535/?", "http [::1] 65535 / more"},
        {"tarnik:a#?b", "tarnik - - a more"},
        {"tarnik:?&=&a=b=%26", "tarnik - -  more =(none) = a=b=&"},
        {"http://@h", "http h -  user"},
        {"http://127.0.0.1:1@example/", "http example - / user"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(pieces(text), expected) << text;
}

TEST(Url, rejectsInvalidUrls) {
    const std::string start = "http://h/";
    const auto longUrl = [&](std::size_t bytes) { return start + std::string(bytes - start.size(), 'a'); };
    EXPECT_TRUE(Url::parse(longUrl(Url::maxBytes)));
    auto refused = words(
        "http://h:65536 http://h:18446744073709551617 http://h: http://h:/c http://h:8o http://%68 "
        "http://[fe80::1%25en0]/ http%3A//h //h/c h/c http://h/%zz http://h/%4 http://h/\u00E9 "
        "http://h\\@g/ http://h@g@i/ http://h:1:2/ tarnik:[ http://127.0.0.1.example/ http://[::1]example/");
    refused.insert(refused.end(), {"", " http://h", "http://h/a b", {"http://h/\0", 10}});
    refused.insert(refused.end(), {longUrl(Url::maxBytes + 1), start + std::string(10'000'000, '%')});
    for (const auto& text : refused) EXPECT_EQ(pieces(text), "none") << text.substr(0, 100);
}

TEST(Url, appendsOneComponent) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"http://H", "a-Z_0.9~", "http://H/a-Z_0.9~"},
        {"http://h/a%2F/b//?q=/#f/", "c", "http://h/a%2F/b/c?q=/#f/"},
        {"http://h/", "../a b?#%2F\u00E9", "http://h/..%2Fa%20b%3F%23%252F%C3%A9"},
    };
    for (const auto& [url, component, result] : cases) {
        const Url longer = Url::parse(url)->appending(component);
        EXPECT_EQ(longer.text(), result);
        EXPECT_EQ(longer, Url::parse(result)) << "the parts match the text";
    }
}

}  // namespace
}  // namespace tarnik
